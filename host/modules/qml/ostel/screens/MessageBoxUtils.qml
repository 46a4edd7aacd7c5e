pragma Singleton

import QtQml 2.12
import ostel.controls 1.0

/** The boxes that tell why a plan could not be loaded. `callback` is called when the user has read it. */
QtObject {
    /** Of the application, which knows more of a file than its name: a function of "corrupted", "tooLarge" or
     *  "converter" and what is known of it, giving a text or "". */
    property var explain

    function showFileCorrupted(callback, error, elementName) {
        tell("corrupted", error, callback,
             qsTr("%1 cannot be read. It is damaged, or no file of its kind. Copy it again from where it came.")
             .arg(elementName))
    }

    function showErrorFileTooLarge(sizeInfo, callback) {
        tell("tooLarge", sizeInfo, callback,
             qsTr("%1 x %2 pixels are too many; a plan has at most %3 x %4. Make it smaller and try again.")
             .arg(sizeInfo.currentWidth).arg(sizeInfo.currentHeight).arg(sizeInfo.maxWidth).arg(sizeInfo.maxHeight))
    }

    function showPdfConverterProblem(callback, error) {
        tell("converter", error, callback,
             qsTr("No picture can be made of this PDF. Save it as PNG and choose that file."))
    }

    function tell(kind, details, callback, text) {
        const known = explain ? explain(kind, details) : ""
        MessageBox.error(qsTr("The plan cannot be loaded"), known || text, callback)
    }
}
