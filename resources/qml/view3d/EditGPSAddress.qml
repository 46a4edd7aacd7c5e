import QtQuick 2.12
import Torvik.Database 1.0
import Torvik.Database.Models 1.0
import Torvik.FileLoaders 1.0
import Torvik.Shared 1.0
import Torvik.UiTools.Models 1.0
import ostel.commands 1.0
import utils 1.0

/** Asks for an address, and goes there. */
CommandBase {
    id: command

    property var map
    property var activeSection: belmora.appStateData.activeStructure
    property string labelStreet
    property string labelCity
    property string labelCountry
    property string lastAddressStreet
    property string lastAddressCity
    property string lastAddressCountry

    text: translator.txt("GoToAddressButton", "Go-To\nAddress")
    icon: design.icons.button3DGotoAddress
    enabled: !!map

    function run() {
        determineAddressLabels()
        initiateAddressValues()
        screenManager.show("Input::GpsAddressInputScreen", {
            "caption": translator.txt("TxtGpsAddressInput", "Edit Address"),
            "defaultValue": "name",
            "minimumValue": undefined,
            "maximumValue": undefined,
            "screenCallback": handleAddress,
            "inputMethodHints": Qt.ImhSensitiveData | Qt.ImhPreferLowercase | Qt.ImhNoPredictiveText,
            "model": [
                { "rowId": 0, "labelText": labelStreet, "inputText": lastAddressStreet },
                { "rowId": 1, "labelText": labelCity, "inputText": lastAddressCity },
                { "rowId": 2, "labelText": labelCountry, "inputText": lastAddressCountry }
            ]
        })
        cleanAutoFilledCountry()
    }

    /** What the project's forms call street and city, our own words where they don't. Forms that name a country leave its
     *  label as it was. */
    function determineAddressLabels() {
        labelStreet = templateLabel("OBJ_Street") || translator.txt("TxtGpsStreet", "Street")
        labelCity = templateLabel("OBJ_City") || translator.txt("TxtGpsCity", "City")
        if (!templateLabel("OBJ_Country"))
            labelCountry = translator.txt("TxtGpsCountry", "Country")
    }

    function templateLabel(column) {
        addressFieldsFilter.filterString = column
        return addressFieldsFilter.count > 0 ? addressFieldsFilter.value(0, "modelData_Text") : ""
    }

    function initiateAddressValues() {
        const last = AppSettingsLastAddress.loadLastAddressPosition()
        lastAddressStreet = last[0]
        lastAddressCity = last[1]
        lastAddressCountry = last[2] || Qt.locale(formatHelper.currentLocaleName).nativeCountryName
    }

    /** A country that only came from the locale is not kept as an address. */
    function cleanAutoFilledCountry() {
        if (lastAddressCountry && !lastAddressStreet && !lastAddressCity)
            lastAddressCountry = ""
    }

    function addressTableIsFilled(address) {
        return !!address && address.length >= 3 && !!(address[0] || address[1] || address[2])
    }

    function handleAddress(result) {
        if (!addressTableIsFilled(result)) {
            running = false
            return
        }
        lastAddressStreet = String(result[0]).trim()
        lastAddressCity = String(result[1]).trim()
        lastAddressCountry = String(result[2]).trim()
        if (map)
            map.gotoAddress(result.join(", "))
        AppSettingsLastAddress.saveLastAddressPosition(lastAddressStreet, lastAddressCity, lastAddressCountry)
        running = false
    }

    Translator {
        id: translator

        translationClassName: "Ostel.Sightlog.App.EditGPSAddress"
    }

    SortFilterProxyModel {
        id: addressFieldsFilter

        filterRoleName: "modelData_BoundColumn"
        sourceModel: ObjectContentListModel {
            dataAccessor: DomainObjectDataAccessor {
                domainObject: command.activeSection
            }
            template: TemplateLoader {
                templateId: command.activeSection && command.activeSection.valid ? command.activeSection.queryTemplateId()
                                                                                 : ""
            }
        }
    }
}
