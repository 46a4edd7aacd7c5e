#!/usr/bin/env python3
"""Makes samples/muehlenviertel.xml again: a quarter of an invented town on a slope, as ISYBAU XML 2017-07.

Everything is computed from the tables below; nothing is random, so the file comes out the same every time.
    python3 samples/make_sample.py > samples/muehlenviertel.xml
"""
import math

EASTING, NORTHING = 561400.0, 5934200.0  # EPSG:25832; open country, no such quarter stands there


def ground(x, y):
    """Height of the ground: a slope to the brook in the south-east, with a hollow around the mill."""
    return 47.5 + 0.021 * y - 0.016 * x + 1.1 * math.sin(x / 95.0) + 0.7 * math.cos(y / 70.0)


# Streets: name, diameter of the first and of the last pipe, depth at the upper end, points of the manholes (metres from the
# origin, downhill). A point that belongs to another street joins it there. "bend" lists vertices between two manholes.
STREETS = [
    ("Am Mühlbach", "MB", 400, 800, 4.2,
     [(0, 262), (41, 250), (83, 236), (124, 219), (163, 199), (201, 176), (238, 151), (273, 123), (306, 92), (331, 57),
      (348, 20), (357, -18)]),
    ("Kornspeicherstraße", "KS", 200, 300, 1.9,
     [(22, 420), (38, 381), (53, 343), (67, 306), (76, 270), "MB3"]),
    ("Eschenweg", "EW", 200, 250, 1.7,
     [(148, 402), (146, 362), (142, 323), (137, 286), (131, 251), "MB4"]),
    ("Torfstecherallee", "TA", 250, 400, 2.2,
     [(262, 392), (258, 351), (252, 310), (244, 270), (233, 231), (219, 202), "MB6"]),
    ("Am Holunderhang", "HH", 200, 300, 1.8,
     [(371, 331), (361, 292), (349, 254), (335, 217), (319, 182), (298, 148), "MB8"]),
    ("Querlandweg", "QW", 200, 200, 1.6,
     [(66, 345), (104, 340), "EW3"]),
    ("Fährmannsgasse", "FG", 150, 200, 1.5,
     [(392, 173), (362, 158), (334, 127), "MB9"]),
    ("Lohgerberhof", "LG", 200, 250, 1.8,
     [(120, 104), (158, 98), (196, 96), (233, 103), (262, 112), "MB8"]),
    ("Am Wehr", "AW", 200, 300, 1.7,
     [(214, 12), (252, 18), (291, 22), (322, 26), "MB11"]),
]
BENDS = {  # pipe -> vertices between its manholes
    "KS5": [(79, 254)],
    "TA6": [(212, 191), (205, 184)],
    "HH6": [(288, 139), (279, 130)],
    "EW6": [],
    "LG3": [(209, 96.4), (222, 99)],
    "FG2": [(350, 146), (341, 136)],
    "MB8": [(289, 108.5)],
}
UNSURVEYED = {"QW2"}  # pipes of which only the ends are known; their course follows from what the inspection finds
MINIMUM_SLOPE = 0.004

# Buildings: key, place, height above ground 0, street manhole to which the pipe from them leads.
BUILDINGS = [("PW1", (376, -30), "MB12"), ("MUEHLE", (262, 146), "MB7")]

# Laterals: house connections, the pipe that they join, the part of its length, distance to the house, side (1 left, -1 right).
LATERALS = [
    ("KS1", 0.30, 11, 1), ("KS1", 0.62, 9, -1), ("KS2", 0.45, 12, 1), ("KS3", 0.55, 10, -1), ("EW1", 0.35, 9, 1),
    ("EW2", 0.50, 11, -1), ("EW2", 0.74, 10, 1), ("EW3", 0.40, 9, -1), ("TA1", 0.33, 12, 1), ("TA2", 0.61, 10, -1),
    ("TA3", 0.48, 11, 1), ("HH1", 0.41, 9, -1), ("HH2", 0.57, 12, 1), ("HH3", 0.36, 10, -1), ("LG1", 0.52, 9, 1),
    ("AW2", 0.45, 10, -1),
]

nodes, pipes = {}, []


def r3(value):
    return f"{value:.3f}"


def build():
    """Manholes first, then the pipes from the lower end up, so that a joining street knows the height it must reach."""
    for street, code, _, _, depth, points in STREETS:
        for i, p in enumerate(q for q in points if not isinstance(q, str)):
            cover = round(ground(*p), 2)
            nodes[f"{code}{i + 1}"] = dict(kind=0, at=p, cover=cover, invert=cover - depth, street=street)
    for street, code, first, last, depth, points in STREETS:
        keys = [p if isinstance(p, str) else f"{code}{i + 1}" for i, p in enumerate(points)]
        invert = nodes[keys[0]]["invert"]
        count = len(keys) - 1
        for i in range(count):
            a, b = nodes[keys[i]], nodes[keys[i + 1]]
            line = [a["at"]] + BENDS.get(f"{code}{i + 1}", []) + [b["at"]]
            run = sum(math.dist(line[k], line[k + 1]) for k in range(len(line) - 1))
            own = keys[i + 1].startswith(code)
            start = invert
            if own:
                invert = round(min(invert - MINIMUM_SLOPE * run, b["cover"] - depth), 2)
                invert = max(invert, round(b["cover"] - 4.9, 2))
                b["invert"] = min(b["invert"], invert)
                end = invert
            else:  # a side street comes in above the invert of the main one
                end = round(min(start - MINIMUM_SLOPE * run, max(b["invert"] + 0.25, start - 0.12 * run)), 2)
                b["invert"] = min(b["invert"], end)
            sizes = [150, 200, 250, 300, 400, 500, 600, 700, 800]
            lo, hi = sizes.index(first), sizes.index(last)
            size = sizes[lo + (hi - lo) * i // max(1, count - 1)]
            a["invert"] = min(a["invert"], start)
            pipes.append(dict(key=f"{code}{i + 1}", kind=0, start=keys[i], end=keys[i + 1], line=line, z=(start, end),
                              size=size, street=street))
    for key, at, to in BUILDINGS:
        floor = round(ground(*at) - 2.4, 2)
        nodes[key] = dict(kind=2, at=at, cover=round(ground(*at), 2), invert=floor, street="Am Mühlbach")
        end = round(nodes[to]["invert"] + 0.05, 2)
        if to == "MB12":  # the pumping station at the lowest point takes the water in
            nodes[key]["invert"] = round(min(nodes[to]["invert"], floor) - 0.45, 2)
            z = (nodes[to]["invert"], round(nodes[to]["invert"] - 0.1, 2))
            pipes.append(dict(key=key, kind=0, start=to, end=key, line=[nodes[to]["at"], at], z=z, size=800, street="Am Mühlbach"))
        else:
            z = (max(floor, end + 0.2), max(floor, end + 0.2) - 0.15)
            nodes[key]["invert"] = min(floor, z[0])
            pipes.append(dict(key=key, kind=0, start=key, end=to, line=[at, nodes[to]["at"]], z=z, size=300, street="Am Mühlbach"))
    by_key = {p["key"]: p for p in pipes}
    for number, (pipe, part, away, side) in enumerate(LATERALS, 1):
        p = by_key[pipe]
        (x0, y0), (x1, y1) = p["line"][0], p["line"][1]
        run = math.dist((x0, y0), (x1, y1))
        ux, uy = (x1 - x0) / run, (y1 - y0) / run
        jx, jy = x0 + ux * run * part, y0 + uy * run * part
        level = p["z"][0] + (p["z"][1] - p["z"][0]) * part
        join = (round(jx, 3), round(jy, 3))
        knee = (round(jx - uy * side * 2.5 - ux * 1.0, 3), round(jy + ux * side * 2.5 - uy * 1.0, 3))
        house = (round(jx - uy * side * away - ux * 1.6, 3), round(jy + ux * side * away - uy * 1.6, 3))
        joint, outlet = f"AP{number:02d}", f"HA{number:02d}"
        z1 = round(level + 0.10, 2)
        z0 = round(z1 + 0.02 * (away + 1), 2)
        nodes[joint] = dict(kind=1, at=join, z=z1, mark="AP", street=p["street"])
        nodes[outlet] = dict(kind=1, at=house, z=z0, mark="GA", street=p["street"])
        pipes.append(dict(key=f"L{number:02d}", kind=1, start=outlet, end=joint, line=[house, knee, join], z=(z0, z1), size=150,
                          street=p["street"], section=pipe, distance=run * (1 - part)))


def length(p):
    plan = sum(math.dist(p["line"][k], p["line"][k + 1]) for k in range(len(p["line"]) - 1))
    return math.hypot(plan, p["z"][1] - p["z"][0]), plan


def point(tag, at, z, mark):
    return (f"<{tag}><Rechtswert>{r3(EASTING + at[0])}</Rechtswert><Hochwert>{r3(NORTHING + at[1])}</Hochwert>"
            f"<Punkthoehe>{r3(z)}</Punkthoehe><PunktattributAbwasser>{mark}</PunktattributAbwasser></{tag}>")


def object_of(key, kind, street, inner, geometry):
    print(f"""      <AbwassertechnischeAnlage>
        <Objektbezeichnung>{key}</Objektbezeichnung>
        <Objektart>{kind}</Objektart>
        <Status>0</Status>
        <Baujahr>1987</Baujahr>
        <Entwaesserungsart>KM</Entwaesserungsart>
{inner}
        <Lage><Strassenname>{street}</Strassenname><Ortsteilname>Mühlenviertel</Ortsteilname></Lage>
        <Geometrie>
          <Geometriedaten>
{geometry}
          </Geometriedaten>
          <CRSLage>ETRS89_UTM32</CRSLage>
        </Geometrie>
      </AbwassertechnischeAnlage>""")


def write_node(key, n):
    if n["kind"] == 1:
        inner = f"        <Knoten><KnotenTyp>1</KnotenTyp><Anschlusspunkt><Punktkennung>{n['mark']}</Punktkennung></Anschlusspunkt></Knoten>"
        marks = [point("Punkt", n["at"], n["z"], n["mark"])]
    elif n["kind"] == 2:
        inner = "        <Knoten><KnotenTyp>2</KnotenTyp><Bauwerk><Bauwerkstyp>1</Bauwerkstyp></Bauwerk></Knoten>"
        marks = [point("Punkt", n["at"], n["cover"], "SBD"), point("Punkt", n["at"], n["invert"], "KOP")]
    else:
        inner = (f"        <Knoten><KnotenTyp>0</KnotenTyp><Schacht><SchachtFunktion>1</SchachtFunktion>"
                 f"<Schachttiefe>{n['cover'] - n['invert']:.2f}</Schachttiefe>"
                 f"<Unterteil><Unterteilform>R</Unterteilform><LaengeUnterteil>1.00</LaengeUnterteil></Unterteil></Schacht></Knoten>")
        marks = [point("Punkt", n["at"], n["cover"], "DMP"), point("Punkt", n["at"], n["invert"], "SMP")]
    geometry = "            <Knoten>\n" + "\n".join("              " + m for m in marks) + "\n            </Knoten>"
    object_of(key, 2, n["street"], inner, geometry)


def write_pipe(p):
    total, plan = length(p)
    heights, run = [], 0.0
    for k, at in enumerate(p["line"]):
        run += math.dist(p["line"][k - 1], at) if k else 0.0
        heights.append(p["z"][0] + (p["z"][1] - p["z"][0]) * run / plan)
    edges = []
    for k in range(0 if p["key"] in UNSURVEYED else len(p["line"]) - 1):
        edges.append("              <Kante>" + point("Start", p["line"][k], heights[k], "KOP" if k else "SMP") +
                     point("Ende", p["line"][k + 1], heights[k + 1], "SMP" if k == len(p["line"]) - 2 else "KOP") + "</Kante>")
    if p["kind"] == 1:
        what = (f"<Leitung><LeitungsFunktion>1</LeitungsFunktion><Anschlussdaten><Objektbezeichnung>{p['section']}</Objektbezeichnung>"
                f"<Kantentyp>0</Kantentyp><Entfernung>{p['distance']:.2f}</Entfernung></Anschlussdaten></Leitung>")
    else:
        what = "<Haltung><HaltungsFunktion>1</HaltungsFunktion></Haltung>"
    inner = f"""        <Kante>
          <KantenTyp>{p['kind']}</KantenTyp>
          <KnotenZulauf>{p['start']}</KnotenZulauf><KnotenZulaufTyp>{nodes[p['start']]['kind']}</KnotenZulaufTyp>
          <KnotenAblauf>{p['end']}</KnotenAblauf><KnotenAblaufTyp>{nodes[p['end']]['kind']}</KnotenAblaufTyp>
          <SohlhoeheZulauf>{r3(p['z'][0])}</SohlhoeheZulauf><SohlhoeheAblauf>{r3(p['z'][1])}</SohlhoeheAblauf>
          <Laenge>{total:.2f}</Laenge><Material>{'STZ' if p['size'] < 400 else 'B'}</Material>
          <Profil><SonderprofilVorhanden>0</SonderprofilVorhanden><Profilart>0</Profilart><Profilbreite>{p['size']}</Profilbreite><Profilhoehe>{p['size']}</Profilhoehe></Profil>
          {what}
        </Kante>"""
    object_of(p["key"], 1, p["street"], inner, "            <Kanten>\n" + "\n".join(edges) + "\n            </Kanten>")


def finding(station, code, first="", second="", quantity=None, clock=0, remark=""):
    def element(name, text):
        return f"<{name}>{text}</{name}>" if text else ""
    return ("              <RZustand>" + element("Station", f"{station:.2f}") + element("InspektionsKode", code)
            + element("Charakterisierung1", first) + element("Charakterisierung2", second)
            + element("Quantifizierung1Numerisch", "" if quantity is None else f"{quantity:.2f}")
            + element("PositionVon", f"{clock:02d}" if clock else "") + element("Kommentar", remark) + "</RZustand>")


def deflection(p, vertex):
    """Station of a vertex on the way down, and the angle in plan, to the right if positive."""
    (x0, y0), (x1, y1), (x2, y2) = p["line"][vertex - 1:vertex + 2]
    turn = math.degrees(math.atan2(y1 - y0, x1 - x0) - math.atan2(y2 - y1, x2 - x1))
    total, plan = length(p)
    run = sum(math.dist(p["line"][k], p["line"][k + 1]) for k in range(vertex))
    return run * total / plan, (turn + 180) % 360 - 180


def write_inspection(p, direction, reached, findings, time):
    rows = "\n".join(finding(*f) for f in findings)
    print(f"""      <InspizierteAbwassertechnischeAnlage>
        <Objektbezeichnung>{p['key']}</Objektbezeichnung>
        <Anlagentyp>1</Anlagentyp>
        <OptischeInspektion>
          <Auftragskennung>1</Auftragskennung>
          <Inspektionsdatum>2024-09-17</Inspektionsdatum>
          <NameUntersucher>H. Brandis</NameUntersucher>
          <Uhrzeit>{time}</Uhrzeit>
          <Rohrleitung>
            <Rohrleitungstyp>0</Rohrleitungstyp>
            <Inspektionsrichtung>{direction}</Inspektionsrichtung>
            <Inspektionslaenge>{reached:.2f}</Inspektionslaenge>
            <RGrunddaten><KnotenZulauf>{p['start']}</KnotenZulauf><KnotenAblauf>{p['end']}</KnotenAblauf></RGrunddaten>
            <Inspektionsdaten>
{rows}
            </Inspektionsdaten>
          </Rohrleitung>
        </OptischeInspektion>
      </InspizierteAbwassertechnischeAnlage>""")


def main():
    build()
    print("""<?xml version="1.0" encoding="UTF-8"?>
<!-- An invented quarter of an invented town; made by make_sample.py. -->
<Identifikation xmlns="http://www.bfr-abwasser.de">
  <Version>2017-07</Version>
  <Datenkollektive>
    <Datenstatus>1</Datenstatus>
    <Stammdatenkollektiv>
      <Kennung>STA01</Kennung>""")
    for key, node in nodes.items():
        write_node(key, node)
    for pipe in pipes:
        write_pipe(pipe)
    print("""    </Stammdatenkollektiv>
    <Zustandsdatenkollektiv>
      <Kennung>ZUS01</Kennung>
      <Auftraege><Auftrag><Auftragskennung>1</Auftragskennung><Auftragsart>1</Auftragsart><Kodiersystem>10</Kodiersystem></Auftrag></Auftraege>""")
    by_key = {p["key"]: p for p in pipes}
    ks1, ks2, ta6, mb5, qw2, ta2 = (by_key[key] for key in ("KS1", "KS2", "TA6", "MB5", "QW2", "TA2"))
    full = length(ks1)[0]
    write_inspection(ks1, "O", full, [(0, "BCD", "XP"), (full * 0.30, "BCA", "A", "A", 150, 9), (full * 0.62, "BCA", "A", "A", 150, 3),
                                      (full, "BCE", "XP")], "08:40:00")
    full = length(ks2)[0]
    write_inspection(ks2, "U", full, [(0, "BCD", "XP"), (14.2, "BAB", "B", "A", 1.5, 12), (full * 0.55, "BCA", "A", "A", 150, 3),
                                      (full, "BCE", "XP")], "09:25:00")
    full = length(ta6)[0]
    bends = [(station, "BCC", "B" if angle > 0 else "A", "Y", abs(angle)) for station, angle in (deflection(ta6, 1), deflection(ta6, 2))]
    write_inspection(ta6, "O", full, [(0, "BCD", "XP"), *bends, (full, "BCE", "XP")], "09:50:00")
    # The one that is under way: no end is noted yet.
    write_inspection(mb5, "U", 17.4, [(0, "BCD", "XP"), (6.3, "BAJ", "A"), (15.8, "BBF", "A", "", None, 10)], "10:05:00")
    # Nobody has surveyed this one; it swings out to the right around something, and back.
    full = length(qw2)[0]
    write_inspection(qw2, "O", full, [(0, "BCD", "XP"), (8, "BCC", "B", "Y", 12), (full / 2, "BCC", "A", "Y", 24), (full - 8, "BCC", "B", "Y", 12),
                                      (full, "BCE", "XP")], "10:40:00")
    full = length(ta2)[0]
    write_inspection(ta2, "O", 31.6, [(0, "BCD", "XP"), (full * 0.61, "BCA", "A", "A", 150, 3), (31.6, "BDC", "Y", "A", None, 0, "Wurzelballen")],
                     "11:15:00")
    print("""    </Zustandsdatenkollektiv>
  </Datenkollektive>
</Identifikation>""")


if __name__ == "__main__":
    main()
