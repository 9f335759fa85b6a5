#!/usr/bin/env python3
"""Counts and sums of a SUMO network and its companions, taken apart from the product.

    independent_parse.py NET.net.xml[.gz] [COMPANION.xml[.gz]]...

Prints a line "NAME VALUE" for each figure. What the figures must equal in a store stands in the test that runs this. Sound
files only: nothing here looks for references that lead nowhere.
"""
import gzip
import re
import sys
import xml.etree.ElementTree as ET

QUARTER = 900  # seconds


def root_of(path):
    with open(path, "rb") as file:
        packed = file.read(2) == b"\x1f\x8b"
    with (gzip.open if packed else open)(path, "rb") as file:
        return ET.parse(file).getroot()


def points(shape):
    return [tuple(float(c) for c in p.split(",")) for p in shape.split()]


class Figures(dict):
    def add(self, name, value=1):
        self[name] = self.get(name, 0) + value


def add_links(net, figures):
    lanes = {}
    limits = {}
    for edge in net.findall("edge"):
        if edge.get("function", "normal") != "normal":
            continue
        of_edge = edge.findall("lane")
        limits[edge.get("id")] = max(float(lane.get("speed")) for lane in of_edge) * 3.6
        figures.add("links")
        figures.add("linkLength", float(of_edge[0].get("length")))
        figures.add("linkLimits", limits[edge.get("id")])
        for lane in of_edge:
            lanes[lane.get("id")] = lane
            figures.add("lanes")
            figures.add("laneWidths", float(lane.get("width", "3.2")))
            figures.add("laneSerials", int(lane.get("index")) + 1)
            for point in points(lane.get("shape")):
                figures.add("laneX", point[0])
                figures.add("laneY", point[1])
    return lanes, limits


def add_connections(net, limits, programmes, figures):
    pairs = set()
    moves = set()
    for connection in net.findall("connection"):
        ends = (connection.get("from"), connection.get("to"))
        if not all(end in limits for end in ends):
            continue
        pairs.add(ends)
        moves.add((ends, connection.get("fromLane"), connection.get("toLane")))
        running = programmes.get(connection.get("tl"))
        if running and int(connection.get("linkIndex", "-1")) < len(running.find("phase").get("state")):
            figures.add("lamps")
    figures["connectors"] = len(pairs)
    figures["laneConnectors"] = len(moves)
    figures["connectorLimits"] = sum(min(limits[a], limits[b]) for a, b in pairs)


def add_programmes(roots, figures):
    """The programmes by id; the last one of an id runs."""
    running = {}
    for root in roots:
        for programme in root.findall("tlLogic"):
            running[programme.get("id")] = programme
            phases = programme.findall("phase")
            durations = [float(phase.get("duration")) for phase in phases]
            signals = max(len(phase.get("state")) for phase in phases)
            figures.add("programmes")
            figures.add("cycles", sum(durations))
            figures.add("offsets", float(programme.get("offset", "0")))
            figures.add("signals", signals)
            for phase, duration in zip(phases, durations):
                for colour, states in (("green", "Gg"), ("yellow", "yY"), ("red", "rsu"), ("grey", "oO")):
                    figures.add(colour, duration * sum(state in states for state in phase.get("state")))
    return running


def add_vehicles(roots, figures):
    """Vehicles with a route of their own or a named one; those that stop at bus stops run on lines."""
    routes = {route.get("id"): route for root in roots for route in root.findall("route")}
    driven = set()
    lines = set()
    for vehicle in (vehicle for root in roots for vehicle in root.findall("vehicle")):
        route = vehicle.find("route")
        route = routes[vehicle.get("route")] if route is None else route
        edges = tuple(route.get("edges").split())
        stops = [stop.get("busStop") for stop in route.findall("stop") + vehicle.findall("stop")]
        if vehicle.get("line") or any(stops):
            name = vehicle.get("line") or re.sub(r"[_.]\d+$", "", vehicle.get("id"))
            lines.add((name, edges, tuple(stops)))
            continue
        figures.add("vehicles")
        figures.add("departureEnds", (int(float(vehicle.get("depart")) // QUARTER) + 1) * QUARTER)
        driven.add(edges)
    figures["routes"] = len(driven)
    figures["routeLinks"] = sum(map(len, driven))
    figures["starts"] = len({edges[0] for edges in driven})
    figures["lines"] = len(lines)
    figures["lineLinks"] = sum(len(edges) for _, edges, _ in lines)
    figures["stops"] = sum(len(stops) for _, _, stops in lines)


def add_devices(roots, lanes, figures):
    def along(lane, text, standard):
        length = float(lanes[lane].get("length"))
        position = standard if text is None else float(text)
        return min(max(position + length if position < 0 else position, 0), length)

    for root in roots:
        for kind in ("e1Detector", "inductionLoop"):
            for loop in root.findall(kind):
                figures.add("loops")
                figures.add("loopPositions", along(loop.get("lane"), loop.get("pos"), 0))
        for stop in root.findall("busStop"):
            length = float(lanes[stop.get("lane")].get("length"))
            end = along(stop.get("lane"), stop.get("endPos"), length)
            figures.add("busStops")
            figures.add("busStopLength", end - along(stop.get("lane"), stop.get("startPos"), end - 10))


def main(net_path, companion_paths):
    figures = Figures()
    net = root_of(net_path)
    companions = [root_of(path) for path in companion_paths]
    lanes, limits = add_links(net, figures)
    add_connections(net, limits, add_programmes([net] + companions, figures), figures)
    add_vehicles(companions, figures)
    add_devices(companions, lanes, figures)
    for name in sorted(figures):
        print(name, repr(float(figures[name])))


if __name__ == "__main__":
    main(sys.argv[1], sys.argv[2:])
