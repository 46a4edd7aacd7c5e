pragma Singleton
import QtQml 2.12
QtObject {
    // The waiting box is this one too.
    function show() {}
    function hide() {}
    function info(caption, text, callback) { console.log(caption + ": " + text) }
    function error(caption, text, callback) { console.warn(caption + ": " + text) }
    function question(caption, text, callback) { callback(true) }
}
