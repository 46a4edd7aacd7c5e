.pragma library

var WIDE = "wide"
var CLOSED = "closed"
var MORE = "more"

/** How each group is shown so that all of it has room in one row. A group has the widths `wide` and `closed` (equal where
 *  there is but one form) and a `weight`. The lightest give way first: all that have a closed form take it, then one after
 *  the other goes behind the button More, whose width is `more`. */
function fit(groups, room, gap, more) {
    const forms = groups.map(function() { return WIDE })
    const order = groups.map(function(group, index) { return index }).sort(function(a, b) {
        return groups[a].weight - groups[b].weight || b - a
    })

    function width() {
        let sum = 0
        let count = 0
        for (let i = 0; i < groups.length; ++i) {
            if (forms[i] === MORE)
                continue
            sum += forms[i] === WIDE ? groups[i].wide : groups[i].closed
            ++count
        }
        if (forms.indexOf(MORE) >= 0) {
            sum += more
            ++count
        }
        return sum + gap * Math.max(0, count - 1)
    }

    for (const narrower of [CLOSED, MORE]) {
        for (const index of order) {
            if (width() <= room)
                return forms
            if (narrower === MORE || groups[index].closed < groups[index].wide)
                forms[index] = narrower
        }
    }
    return forms
}
