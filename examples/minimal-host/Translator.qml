import QtQml 2.12
QtObject {
    property string translationClassName
    function txt(key, defaultText) { return defaultText }
}
