pragma Singleton

import QtQml 2.12

/** Asks the user, or tells him. Whoever shows the boxes hears requested() and calls answer(). */
QtObject {
    id: box

    /** What waits for an answer, oldest first: kind ("info", "error", "question", "waiting"), caption, text, and what is
     *  called with the answer. */
    property var boxes: []

    signal requested()

    function info(caption, text, callback) {
        ask("info", caption, text, callback)
    }

    function error(caption, text, callback) {
        ask("error", caption, text, callback)
    }

    /** `callback` is called with true for yes and false for no. */
    function question(caption, text, callback) {
        ask("question", caption, text, callback)
    }

    /** Answers the oldest box and takes it away. */
    function answer(yes) {
        if (boxes.length === 0)
            return
        const answered = boxes[0]
        boxes = boxes.slice(1)
        if (answered.callback)
            answered.callback(yes)
    }

    function ask(kind, caption, text, callback) {
        boxes = boxes.concat([{ "kind": kind, "caption": caption, "text": text, "callback": callback }])
        requested()
    }
}
