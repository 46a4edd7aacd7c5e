#include "host/app/CommandLine.h"

namespace Torvik::Viewer {

QString helpText()
{
    return QStringLiteral(
        R"(kxviewer shows sewer networks in 3D.

  kxviewer [PROJECT] [VIEW]                   opens a project in a window; without one, the sample
  kxviewer [PROJECT] --screenshot FILE [VIEW] paints a project into a picture and ends
  kxviewer [PROJECT] --print FILE.pdf [VIEW]  prints a project on a page and ends
  kxviewer [PROJECT] --inspect KEY --replay FILE [...]
                                              plays a recording of a vehicle into an inspection and ends
  kxviewer [PROJECT] --inspect KEY --listen PORT [...]
                                              shows an inspection that another process tells of
  kxviewer import SOURCE PROJECT [...]        makes a project from an open format
  kxviewer findings PROJECT FILE... [...]     adds findings to a project
  kxviewer info PROJECT [--json]              prints what a project holds
  kxviewer record PROJECT INSPECTION FILE     makes a recording of a vehicle's run along a stored pipe
  kxviewer [PROJECT] --dump FILE              writes the scene as JSON

PROJECT is the folder of a project. A folder called "import", "findings", "info" or "record" is written ./import.

VIEW, for a window or a picture:
  --view top|3d|front  from where to look; top if not given
  --fit                the whole project in view, which is also the start
  --go-to KEY          the node, section or lateral with this key in the middle instead
  --distance M         metres from the camera to the point it looks at, seen through the lens of 3 degrees:
                       100 m show 5.2 m from the lower to the upper edge; follows from the object if not given
  --size WxH           size in pixels; 1280x800 if not given
  --tiles FOLDER|URL   a street map under the network: a folder with tiles as Z/X/Y.png, or the address of a tile
                       server; without it what the settings say, else no map
  --no-map             no map, whatever the settings say

--gps WHAT             what the simulated GPS says: off (also if not given), none (no fix), 2d or 3d (a fix at the middle of
                       the project), LATITUDE,LONGITUDE, or a track to walk along: a GPX file, or lines of
                       time,latitude,longitude[,status]; Go to, in the window, takes the view there if there is a map
--timing               tells on stderr how long it takes to the first painted network, part by part

--plan FILE            lays a plan under the network, for a look: a picture, a PDF, a DXF or a DWG; nothing is stored, and
                       FILE stays as it is; goes with a window, a picture and --dump
  --plan-scale S       S times as large; a picture is 100 m long at 1, a drawing has its units as metres
  --plan-at E,N        its middle at this easting and northing of the project, not in the middle of the view; of a
                       drawing with large coordinates the middle is where most of its lines are

--screenshot FILE      the ending names the format (png, jpg, bmp, ppm); the picture is taken once the project is
                       read and painted
--print FILE           the view on a page of A4 as PDF, true to scale, with scale bar, north arrow and the project's data
--window, --whole-window
                       with --screenshot: a picture of the whole window, with lists and buttons, not only of the scene

import:
  SOURCE               ISYBAU XML (2013, 2017), EPA SWMM (.inp), or anything that GDAL/OGR opens
  PROJECT              the folder to make; it must not hold anything yet
  --crs EPSG:N         coordinate system of the source where the source does not tell
  --mapping FILE       names the layers and columns of a GDAL/OGR source
  --with FILE          a further file of the same network, such as its inspections; may be repeated
  --findings FILE      findings of inspections as CSV; may be repeated
  --report FILE        writes the account of the import as JSON

findings:
  FILE                 CSV with a header: pipe, distance, code, and if wanted clock, angle, quantity, lateral;
                       distances in metres from the start of the latest inspection of the pipe
  --report FILE        writes the account as JSON

INSPECTION, KEY of one: the inspection's own key, or that of its pipe for the pipe's latest inspection

record:
  FILE                 CSV with a header: time in s, counter in m, and x, y, z of the 3D sensor in m from the pipe's
                       begin (east, north, up)
  --step M             metres from one reading to the next; 0.25 if not given
  --speed M            metres a second; 0.15 if not given
  --noise M            metres by which the sensor is at most off, in any direction; 0 if not given
  --seed N             the same seed gives the same noise; 1 if not given

--language en|de       of the window; the one chosen last, or the machine's, if not given

--inspect KEY          makes this inspection the active one
--replay FILE          plays a recording; prints the counter, the points of the latest measurement and the length of
                       the stored course at the end, and paints a picture then with --screenshot
  --real-time          the pipe is drawn and stored as the sensor measures it; without it only the counter runs
  --window             in a window, to play, pause and go back
  --speed N|max        times as fast as it was; if not given, as fast as possible, or 1 in a window

--listen PORT          opens a window and takes readings from another process by TCP: time,counter[,x,y,z], one a line;
                       needs --inspect KEY, takes --real-time; says on which port it listens (PORT 0: a free one)
  --address A          127.0.0.1, which only this machine reaches, if not given

--dump FILE            projector, nodes, sections, observations and connections, sorted, with all digits of the numbers
--help, --version      this text, the version

Exit status: 0 done, 1 a project or file could not be opened or written, 2 wrong arguments.
)");
}

} // namespace Torvik::Viewer
