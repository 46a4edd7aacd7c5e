import QtQuick 2.12

/** Gives the texts of one class in the user's language. */
QtObject {
    property string translationClassName
    readonly property QtObject helper: belmora.translationHelper

    /** The translation of the key, or the default text where there is none. */
    function txt(key, defaultText) {
        // Read, so that a binding hears of another language.
        helper.languageCode
        return helper.translated(translationClassName, key, defaultText)
    }
}
