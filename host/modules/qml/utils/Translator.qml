import QtQuick 2.12

/** Gives the texts of one class in the user's language. */
QtObject {
    property string translationClassName

    /** The translation of the key, or the default text where there is none. */
    function txt(key, defaultText) {
        return belmora.translationHelper.translated(translationClassName, key, defaultText)
    }
}
