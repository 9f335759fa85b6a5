#!/usr/bin/env python3
"""What differs between two SUMO networks, taken from the files alone.

    compare_nets.py A.net.xml[.gz] B.net.xml[.gz] [--json] [--first N]

Numbers are compared as numbers, permissions as sets of classes, everything else as text. Roads, lanes, junctions and programmes
are found by their ids, connections by what they connect; the path of a connection is the shapes of its inner lanes, whatever those
are called. An attribute that one file spells out and the other leaves to its default is a difference.

Prints how many of each kind differ and the first of them. Exit code 0: equal; 1: different; 2: a file cannot be read.
"""
import argparse
import gzip
import json
import sys
import xml.etree.ElementTree as ET

CLASSES = frozenset(
    "private emergency authority army vip pedestrian passenger hov taxi bus coach delivery truck trailer motorcycle moped bicycle"
    " evehicle tram rail_urban rail rail_electric rail_fast ship custom1 custom2".split())
TEXTS = frozenset(
    "id from to name tl via type state response foes incLanes intLanes dir programID key value nodes edges crossingEdges lane"
    " function bidi customShape netOffset".split())
SHAPES = frozenset(["shape", "outlineShape"])
SCHEMA = "{http://www.w3.org/2001/XMLSchema-instance}"


def root_of(path):
    with open(path, "rb") as file:
        packed = file.read(2) == b"\x1f\x8b"
    with (gzip.open if packed else open)(path, "rb") as file:
        root = ET.parse(file).getroot()
    if root.tag != "net":
        raise ValueError("not a network, but <%s>" % root.tag)
    return root


def points(shape):
    # A point that says no height lies at 0.
    coordinates = (tuple(float(c) for c in point.split(",")) for point in shape.split())
    return tuple(point if len(point) > 2 else point + (0.0,) for point in coordinates)


def value_of(name, text):
    if name in TEXTS:
        return text
    if name in SHAPES:
        return points(text)
    if text in ("true", "false"):
        return float(text == "true")
    try:
        return float(text)
    except ValueError:
        pass
    try:
        return tuple(float(part) for part in text.split(","))
    except ValueError:
        return text


def permissions(element):
    """The classes that may drive there; None where the element says nothing."""
    allow, disallow = element.get("allow"), element.get("disallow")
    if allow is None and disallow is None:
        return CLASSES
    if allow is not None:
        return CLASSES if allow == "all" else frozenset(allow.split())
    return frozenset() if disallow == "all" else CLASSES - frozenset(disallow.split())


def attributes(element, without=()):
    return {name: value_of(name, text) for name, text in element.attrib.items()
            if name not in without and not name.startswith(SCHEMA)}


def parameters(element):
    return sorted((param.get("key"), param.get("value")) for param in element.findall("param"))


def whole(element):
    """The element with all that it holds."""
    return (element.tag, attributes(element), [whole(child) for child in element])


def others(element, known):
    return [whole(child) for child in element if child.tag not in known]


class Net:
    """The network as one table a kind: what is compared, by what it is called."""

    def __init__(self, root):
        self.kinds = {}
        self.orders = {}
        self.count = {}
        self.root = root
        self.put("net attributes", "net", attributes(root))
        self.inner = {}  # by lane id: the lane of an inner edge
        self.onward = {}  # by inner (edge, lane index): the next inner lane of the path
        for edge in root.findall("edge"):
            self.add_edge(edge)
        for connection in root.findall("connection"):
            if connection.get("from", "").startswith(":") and connection.get("via"):
                self.onward[(connection.get("from"), connection.get("fromLane"))] = connection.get("via")
        for connection in root.findall("connection"):
            self.add_connection(connection)
        for junction in root.findall("junction"):
            self.add_junction(junction)
        for programme in root.findall("tlLogic"):
            self.add_programme(programme)
        for element in root:
            if element.tag == "type":
                self.put("types", element.get("id"), (attributes(element), others(element, ())))
            elif element.tag == "location":
                self.put("location", "location", attributes(element))
            elif element.tag == "roundabout":
                nodes = sorted(element.get("nodes", "").split())
                self.put("roundabouts", " ".join(nodes), sorted(element.get("edges", "").split()))
            elif element.tag not in ("edge", "connection", "junction", "tlLogic"):
                self.put("other elements", "%s %s" % (element.tag, sorted(element.attrib.items())), whole(element))

    def put(self, kind, name, value):
        # The second of a name is an object of its own.
        number = self.count[(kind, name)] = self.count.get((kind, name), 0) + 1
        key = name if number == 1 else "%s (%d)" % (name, number)
        self.kinds.setdefault(kind, {})[key] = value

    def follow(self, kind, name):
        self.orders.setdefault(kind, []).append(name)

    def add_edge(self, edge):
        name = edge.get("id")
        if edge.get("function", "normal") in ("internal", "crossing", "walkingarea"):
            self.put("inner edges", name, (attributes(edge), others(edge, ("lane",))))
            self.follow("order of inner edges", name)
            for lane in edge.findall("lane"):
                self.inner[lane.get("id")] = lane
                self.put("inner lanes", lane.get("id"),
                         (attributes(lane, ("allow", "disallow")), permissions(lane), others(lane, ())))
            return
        self.follow("order of edges", name)
        self.put("edges", name, (edge.get("from"), edge.get("to"), len(edge.findall("lane"))))
        self.put("edge lengths", name, edge.get("length") and float(edge.get("length")))
        self.put("edge shapes", name, edge.get("shape") and points(edge.get("shape")))
        self.put("edge attributes", name, attributes(edge, ("id", "from", "to", "length", "shape")))
        self.put("edge parameters", name, parameters(edge))
        self.put("edge parts", name, others(edge, ("lane", "param")))
        for lane in edge.findall("lane"):
            self.add_lane(lane)

    def add_lane(self, lane):
        name = lane.get("id")
        self.put("lanes", name, lane.get("index"))
        for kind, attribute in (("lane lengths", "length"), ("lane widths", "width"), ("lane speeds", "speed")):
            self.put(kind, name, lane.get(attribute) and float(lane.get(attribute)))
        self.put("lane permissions", name, permissions(lane))
        self.put("lane shapes", name, points(lane.get("shape", "")))
        self.put("lane attributes", name,
                 attributes(lane, ("id", "index", "length", "width", "speed", "allow", "disallow", "shape")))
        self.put("lane parameters", name, parameters(lane))
        self.put("lane parts", name, others(lane, ("param",)))

    def path(self, via):
        shapes = []
        while via and via in self.inner and len(shapes) < 100:
            lane = self.inner[via]
            shapes.append(points(lane.get("shape", "")))
            edge, _, index = via.rpartition("_")
            via = self.onward.get((edge, index))
        return shapes

    def add_connection(self, connection):
        name = "%s_%s -> %s_%s" % tuple(connection.get(end) for end in ("from", "fromLane", "to", "toLane"))
        if name.startswith(":") or connection.get("to", "").startswith(":"):
            self.put("inner connections", name, (attributes(connection), others(connection, ())))
            return
        self.follow("order of connections", name)
        self.put("connections", name, True)
        self.put("connection directions", name, connection.get("dir"))
        self.put("connection states", name, connection.get("state"))
        self.put("connection paths", name, self.path(connection.get("via")))
        self.put("connection signals", name, (connection.get("tl"), connection.get("linkIndex")))
        self.put("connection attributes", name,
                 (attributes(connection, ("from", "fromLane", "to", "toLane", "dir", "state", "via", "tl", "linkIndex",
                                          "allow", "disallow")),
                  permissions(connection)))
        self.put("connection parameters", name, parameters(connection))

    def add_junction(self, junction):
        name = junction.get("id")
        if junction.get("type") == "internal":
            self.put("inner junctions", name, (attributes(junction), others(junction, ())))
            return
        self.follow("order of junctions", name)
        self.put("junctions", name, True)
        self.put("junction types", name, junction.get("type"))
        self.put("junction positions", name, [float(junction.get(c, "0")) for c in "xyz"])
        self.put("junction shapes", name, points(junction.get("shape", "")))
        self.put("junction lanes", name, (junction.get("incLanes", "").split(), junction.get("intLanes", "").split()))
        self.put("right of way", name, others(junction, ("param",)))
        self.put("junction attributes", name,
                 attributes(junction, ("id", "type", "x", "y", "z", "shape", "incLanes", "intLanes")))
        self.put("junction parameters", name, parameters(junction))

    def add_programme(self, programme):
        name = "%s/%s" % (programme.get("id"), programme.get("programID"))
        self.put("programmes", name, True)
        self.put("programme attributes", name, attributes(programme, ("id", "programID")))
        self.put("phases", name, others(programme, ("param",)))
        self.put("programme parameters", name, parameters(programme))


def compare(a, b, first=5):
    """By kind: how many there are in either, how many differ, and the first names of those."""
    result = {}
    for kind in sorted(set(a.kinds) | set(b.kinds)):
        in_a, in_b = a.kinds.get(kind, {}), b.kinds.get(kind, {})
        names = list(in_a) + [name for name in in_b if name not in in_a]
        # What is missing as a whole is counted as such, not once more for each of its properties.
        whole_kind = {"edge": "edges", "lane": "lanes", "connection": "connections", "junction": "junctions",
                      "programme": "programmes"}.get(kind.split()[0])
        if kind in ("right of way", "phases"):
            whole_kind = "junctions" if kind == "right of way" else "programmes"
        if whole_kind and kind != whole_kind:
            names = [name for name in names if name in in_a and name in in_b]
        missing = object()
        differing = [name for name in names if in_a.get(name, missing) != in_b.get(name, missing)]
        result[kind] = {"compared": len(names), "differing": len(differing), "first": differing[:first]}
    for kind in sorted(set(a.orders) | set(b.orders)):
        order_a, order_b = a.orders.get(kind, []), b.orders.get(kind, [])
        both = set(order_a) & set(order_b)
        pairs = list(zip([n for n in order_a if n in both], [n for n in order_b if n in both]))
        moved = [x for x, y in pairs if x != y]
        result[kind] = {"compared": len(pairs), "differing": len(moved), "first": moved[:first]}
    return result


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n")[0])
    parser.add_argument("nets", nargs=2, metavar="NET")
    parser.add_argument("--json", action="store_true", help="one JSON object, by kind")
    parser.add_argument("--first", type=int, default=5, help="how many of a kind are named")
    options = parser.parse_args()
    nets = []
    for path in options.nets:
        try:
            nets.append(Net(root_of(path)))
        except (OSError, EOFError, ValueError, TypeError, ET.ParseError) as error:
            print("%s: %s" % (path, error), file=sys.stderr)
            return 2
    result = compare(nets[0], nets[1], options.first)
    if options.json:
        print(json.dumps(result, ensure_ascii=False, indent=1))
    else:
        for kind, found in result.items():
            names = ": " + "; ".join(found["first"]) if found["first"] else ""
            print("%-24s %7d of %7d%s" % (kind, found["differing"], found["compared"], names))
    return 1 if any(found["differing"] for found in result.values()) else 0


if __name__ == "__main__":
    sys.exit(main())
