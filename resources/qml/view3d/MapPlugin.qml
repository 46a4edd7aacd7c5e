import QtQuick 2.12
import QtLocation 5.12
import Qt.labs.platform 1.1

/** The map's plug-in, with the endpoints that the host has chosen. */
Plugin {
    /** tilesHost, geocodingHost, placesHost, cacheDirectory, copyright; any may be missing. */
    property var endpoints: ({})
    /** A host that by its name does not exist: an empty value would keep the plug-in from starting, and without one it
     *  would ask a public service. */
    readonly property string nowhere: "http://map.invalid"

    function homeFolder() {
        return StandardPaths.writableLocation(StandardPaths.HomeLocation).toString().replace(/^file:\/\//, "")
    }

    name: "osm"

    PluginParameter { name: "minimumFieldOfView"; value: 0.01 }
    PluginParameter { name: "osm.useragent"; value: "SightlogII" }
    PluginParameter { name: "osm.places.host"; value: endpoints.placesHost || nowhere }
    PluginParameter { name: "osm.geocoding.host"; value: endpoints.geocodingHost || nowhere }
    PluginParameter { name: "osm.mapping.cache.disk.cost_strategy"; value: "bytesize" }
    PluginParameter { name: "osm.mapping.cache.disk.size"; value: "200000000" }
    PluginParameter { name: "osm.mapping.cache.directory"; value: endpoints.cacheDirectory || homeFolder() }
    // A tilted view shows several times as many tiles as the plug-in expects; it would leave those out that don't fit.
    PluginParameter { name: "osm.mapping.cache.memory.cost_strategy"; value: "bytesize" }
    PluginParameter { name: "osm.mapping.cache.memory.size"; value: "30000000" }
    PluginParameter { name: "osm.mapping.cache.texture.cost_strategy"; value: "bytesize" }
    PluginParameter { name: "osm.mapping.cache.texture.size"; value: "200000000" }
    PluginParameter { name: "osm.mapping.providersrepository.disabled"; value: "true" }
    PluginParameter {
        name: "osm.mapping.providersrepository.address"
        value: (endpoints.tilesHost || nowhere) + "/osm/5.6/"
    }
    // The provider that the map chooses; the others are the plug-in's own.
    PluginParameter { name: "osm.mapping.custom.host"; value: (endpoints.tilesHost || nowhere) + "/" }
    PluginParameter { name: "osm.mapping.custom.mapcopyright"; value: endpoints.copyright || " " }
}
