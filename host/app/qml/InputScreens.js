/** What the application's input screens ask for. describe() gives a screen's caption, its rows (label, text, number),
 *  check(texts) with a line for each row that is wrong, result(texts) for whoever asked, and what a button may fill in. */

function parseNumber(text) {
    const trimmed = String(text).trim().replace(",", ".")
    return trimmed === "" ? NaN : Number(trimmed)
}

function textOf(value) {
    return value === undefined || value === null ? "" : String(value)
}

function withinError(text, least, most) {
    const value = parseNumber(text)
    if (isNaN(value))
        return qsTr("This is not a number.")
    if (value < least || value > most)
        return qsTr("Between %1 and %2.").arg(least).arg(most)
    return ""
}

function atLeastError(text, least) {
    const value = parseNumber(text)
    if (isNaN(value))
        return qsTr("This is not a number.")
    return value < least ? qsTr("At least %1.").arg(least) : ""
}

function valueScreen(args) {
    const least = args.validator && args.validator.bottom !== undefined ? args.validator.bottom : -Infinity
    return {
        "caption": args.caption,
        "rows": [{ "labelText": args.labelText, "inputText": textOf(args.defaultValue), "number": true }],
        "check": function(texts) { return [atLeastError(texts[0], least)] },
        "result": function(texts) { return String(parseNumber(texts[0])) }
    }
}

function positionScreen(args) {
    const digits = args.requiredPositionPrecision
    return {
        "caption": args.caption,
        "rows": [
            { "labelText": qsTr("Latitude (degrees, north is positive)"), "inputText": fixed(args.initLatitude, digits),
              "number": true },
            { "labelText": qsTr("Longitude (degrees, east is positive)"), "inputText": fixed(args.initLongitude, digits),
              "number": true }
        ],
        "check": function(texts) { return [withinError(texts[0], -90, 90), withinError(texts[1], -180, 180)] },
        "result": function(texts) { return texts.map(function(text) { return String(parseNumber(text)) }) },
        "fillText": args.isGpsWorkingFun && args.isGpsWorkingFun() ? qsTr("Where I am now") : "",
        "fill": function() {
            const gps = ostel.system.gpsData
            return [fixed(gps.latitude, digits), fixed(gps.longitude, digits)]
        }
    }
}

function fixed(value, digits) {
    const number = Number(value)
    return value === undefined || value === "" || isNaN(number) ? "" : number.toFixed(digits)
}

function addressScreen(args) {
    return {
        "caption": args.caption,
        "rows": args.model,
        "check": function(texts) {
            const some = texts.some(function(text) { return text.trim() !== "" })
            return [some ? "" : qsTr("A street, a city or a country is needed.")]
        },
        "result": function(texts) { return texts }
    }
}

function floorsScreen(args) {
    const unit = formatHelper.distanceUnitString()
    const most = Math.round(formatHelper.convertLength("m", unit, 100))
    const metres = args.model.map(function(row) { return parseNumber(textOf(row.inputText)) })
    const shown = args.model.map(function(row, floor) {
        return unit === "m" || isNaN(metres[floor]) ? textOf(row.inputText)
                                                    : formatHelper.convertLength("m", unit, metres[floor]).toFixed(2)
    })
    return {
        "caption": args.caption || qsTr("Heights of the floors"),
        "rows": args.model.map(function(row, floor) {
            const text = floor === 0 ? qsTr("Floor %1: height above the zero level of the view, in %2")
                                     : qsTr("Floor %1: height above the floor below, in %2")
            return { "labelText": text.arg(floor + 1).arg(unit), "inputText": shown[floor], "number": true }
        }),
        "check": function(texts) { return texts.map(function(text) { return withinError(text, -most, most) }) },
        "result": function(texts) {
            return { "floorsModel": texts.map(function(text, floor) {
                // The same text is the same height, whatever was rounded for it.
                return text === shown[floor] ? metres[floor] : formatHelper.convertLength(unit, "m", parseNumber(text))
            }) }
        }
    }
}

/** Undefined for a screen that is no input. */
function describe(name, args) {
    switch (name) {
    case "Input::ValueInputScreen":
        return valueScreen(args)
    case "Input::GpsPositionInputScreen":
        return positionScreen(args)
    case "Input::GpsAddressInputScreen":
        return addressScreen(args)
    case "View3d::FloorsInputScreen":
        return floorsScreen(args)
    }
    return undefined
}
