#!/usr/bin/env python3
"""Injects one difference after the other into a copy of a network: compare_nets.py must see exactly that kind.

    compare_nets_test.py NET.net.xml
"""
import copy
import json
import os
import subprocess
import sys
import tempfile
import unittest
import xml.etree.ElementTree as ET

import compare_nets

HERE = os.path.dirname(os.path.abspath(__file__))
PLAIN = "edge[@from]"  # inner edges have no ends


def sub(parent, tag, **attributes):
    return ET.SubElement(parent, tag, attributes)


def put(path, attribute, value):
    def change(net):
        element = net.find(path)
        assert element is not None and element.get(attribute) != value, path
        element.set(attribute, value)
    return change


def drop(path):
    def change(net):
        parents = {child: parent for parent in net.iter() for child in parent}
        element = net.find(path)
        parents[element].remove(element)
    return change


def swap(tag, first, second):
    """Exchanges two top-level elements in the order of the file."""
    def change(net):
        a, b = net.findall(tag)[first], net.findall(tag)[second]
        at = list(net)
        i, j = at.index(a), at.index(b)
        net[i], net[j] = b, a
    return change


def add(path, tag, **attributes):
    return lambda net: sub(net.find(path), tag, **attributes)


DIFFERENCES = [
    (put(".", "lefthand", "true"), {"net attributes"}),
    (put("location", "netOffset", "1.00,0.00"), {"location"}),
    (put("type", "priority", "99"), {"types"}),
    (drop("type"), {"types"}),
    (put("roundabout", "edges", "quay_market"), {"roundabouts"}),
    (add(".", "prohibition", prohibitor="a->b", prohibited="c->d"), {"other elements"}),
    (put(PLAIN, "to", "elsewhere"), {"edges"}),
    (put(PLAIN, "priority", "99"), {"edge attributes"}),
    (put(PLAIN, "length", "99"), {"edge lengths"}),
    (put("edge[@shape]", "shape", "0,0 1,1"), {"edge shapes"}),
    (put("edge/param", "value", "other"), {"edge parameters"}),
    (add(PLAIN, "stopOffset", value="2"), {"edge parts"}),
    (put(PLAIN + "/lane", "length", "1.00"), {"lane lengths"}),
    (put(PLAIN + "/lane", "width", "9.00"), {"lane widths"}),
    (put(PLAIN + "/lane", "speed", "99"), {"lane speeds"}),
    (put(PLAIN + "/lane", "disallow", "truck"), {"lane permissions"}),
    (put(PLAIN + "/lane", "shape", "0,0 1,1"), {"lane shapes"}),
    (put(PLAIN + "/lane", "acceleration", "1"), {"lane attributes"}),
    (put("edge/lane/param", "value", "other"), {"lane parameters"}),
    (add(PLAIN + "/lane", "stopOffset", value="2"), {"lane parts"}),
    (put("edge[@function]", "bidi", "x"), {"inner edges"}),
    (put("edge[@function]/lane", "speed", "99"), {"inner lanes"}),
    (put("connection[@tl]", "dir", "t"), {"connection directions"}),
    (put("connection[@tl]", "state", "Z"), {"connection states"}),
    (put("connection[@tl]", "linkIndex", "99"), {"connection signals"}),
    (put("connection[@tl]", "contPos", "1"), {"connection attributes"}),
    (add("connection[@tl]", "param", key="k", value="v"), {"connection parameters"}),
    (drop("connection[@tl]"), {"connections"}),
    (put("connection[@dir='l'][@tl]", "via", ":market_0_0"), {"connection paths"}),
    (put("connection[@state='m'][@via=':market_16_0']", "via", ":market_17_0"), {"inner connections", "connection paths"}),
    (put("edge[@id=':market_16']/lane", "shape", "0,0 1,1"), {"inner lanes", "connection paths"}),
    (drop("junction[@type='dead_end']"), {"junctions"}),
    (put("junction[@type='priority']", "type", "zipper"), {"junction types"}),
    (put("junction", "x", "-1.5"), {"junction positions"}),
    (put("junction", "shape", "0,0 1,1"), {"junction shapes"}),
    (put("junction", "incLanes", "a b"), {"junction lanes"}),
    (put("junction/request", "cont", "1"), {"right of way"}),
    (put("junction/request", "response", "0"), {"right of way"}),
    (put("junction", "radius", "4"), {"junction attributes"}),
    (add("junction", "param", key="k", value="v"), {"junction parameters"}),
    (put("junction[@type='internal']", "x", "-1.5"), {"inner junctions"}),
    (drop("tlLogic"), {"programmes"}),
    (put("tlLogic", "offset", "99"), {"programme attributes"}),
    (put("tlLogic/phase", "duration", "99"), {"phases"}),
    (drop("tlLogic/phase"), {"phases"}),
    (add("tlLogic", "param", key="k", value="v"), {"programme parameters"}),
    (swap(PLAIN, 0, 1), {"order of edges"}),
    (swap("edge[@function]", 0, 1), {"order of inner edges"}),
    (swap("connection[@tl]", 0, 1), {"order of connections"}),
    (swap("junction", 0, 1), {"order of junctions"}),
]


class CompareNets(unittest.TestCase):
    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.net = ET.parse(NET).getroot()
        # What the network lacks, so that it can differ.
        road = self.net.find(PLAIN)
        sub(road, "param", key="k", value="v")
        sub(road.find("lane"), "param", key="k", value="v")
        sub(self.net, "roundabout", nodes="quay market", edges="market_quay quay_market")

    def written(self, net, name):
        path = os.path.join(self.folder.name, name)
        ET.ElementTree(net).write(path, "utf-8")
        return path

    def run_on(self, *arguments):
        return subprocess.run([sys.executable, os.path.join(HERE, "compare_nets.py"), *arguments], stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, universal_newlines=True)

    def test_sees_each_difference_as_what_it_is(self):
        for number, (change, kinds) in enumerate(DIFFERENCES):
            with self.subTest(number=number, kinds=kinds):
                changed = copy.deepcopy(self.net)
                change(changed)
                for pair in ((self.net, changed), (changed, self.net)):
                    found = compare_nets.compare(*map(compare_nets.Net, pair))
                    self.assertEqual({kind for kind in found if found[kind]["differing"]}, kinds)

    def test_takes_numbers_as_numbers_and_permissions_as_sets(self):
        spelled = copy.deepcopy(self.net)
        for lane in spelled.iter("lane"):
            lane.set("speed", lane.get("speed") + "0")
            if lane.get("disallow"):
                lane.set("disallow", " ".join(reversed(lane.get("disallow").split())))
        outcome = self.run_on(self.written(self.net, "a.net.xml"), self.written(spelled, "b.net.xml"))
        self.assertEqual(outcome.returncode, 0, outcome.stdout)

    def test_tells_by_its_exit_code(self):
        changed = copy.deepcopy(self.net)
        changed.find(PLAIN).set("priority", "99")
        outcome = self.run_on("--json", self.written(self.net, "a.net.xml"), self.written(changed, "b.net.xml"))
        self.assertEqual(outcome.returncode, 1, outcome.stderr)
        self.assertEqual(json.loads(outcome.stdout)["edge attributes"],
                         {"compared": len(self.net.findall(PLAIN)), "differing": 1, "first": [self.net.find(PLAIN).get("id")]})

    def test_says_what_cannot_be_read(self):
        sound = self.written(self.net, "a.net.xml")
        self.assertEqual(self.run_on(sound, os.path.join(self.folder.name, "none.net.xml")).returncode, 2)
        self.assertEqual(self.run_on(sound, self.written(ET.Element("routes"), "c.net.xml")).returncode, 2)


if __name__ == "__main__":
    NET = sys.argv.pop(1)
    unittest.main()
