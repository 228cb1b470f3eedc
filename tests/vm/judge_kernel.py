#!/usr/bin/env python3
"""Judges what the Agent saw on Debian's own kernel.

Usage: judge_kernel.py FOLDER. FOLDER holds what the machine of stage one handed back: what was done there, and what
the console's inspector reads in the files of the Agent. Prints each thing that is held; exits 1 when one is not.
"""
import json
import pathlib
import re
import sys

RIGHTS = {"CAP_DAC_READ_SEARCH": 2, "CAP_SYS_PTRACE": 19, "CAP_PERFMON": 38, "CAP_BPF": 39}
TOLD_BY_KERNEL = ["Running Processes", "Listening Ports", "TCP Connections", "System (kernel modules)"]

folder = pathlib.Path(sys.argv[1])
broken = 0


def hold(what, fine, found=""):
    global broken
    broken += not fine
    print(f"{'holds ' if fine else 'BROKEN'}  {what}{'' if fine else f': found {found}'}")


def read(name):
    return (folder / name).read_text(encoding="utf-8")


rights = dict(line.split() for line in read("rights.txt").splitlines())
wanted = f"{sum(1 << number for number in RIGHTS.values()):016x}"
hold("the Agent ran with these rights and no others: " + ", ".join(RIGHTS), set(rights.values()) == {wanted}, rights)

levels = {level["watched"]: level for level in json.loads(read("status.json"))["levels"]}
for watched in TOLD_BY_KERNEL:
    level = levels.get(watched, {})
    hold(f"{watched}: every event is told by the kernel", (level.get("level"), level.get("how")) == ("events", "BPF"), level)

home = json.loads(read("home.json"))
rows = [dict(zip(home["columns"], row)) for row in home["rows"]]


def told(monitor, change=None):
    """Descriptions of the monitor's rows, in order; with a change only those that came (1) or went (-1)."""
    return [row["Description"] for row in rows if row["Monitor"] == monitor
            and (change is None or float(row["Change"]) == change)]


started = read("started.txt").split()
came = [text for text in told("Running Processes", 1) if text.startswith("/opt/load/")]
hold("200 programs that end at once are each seen once, by their names", len(started) == 200 and sorted(came) == sorted(started),
     f"{len(came)} of {len(started)}, missing {sorted(set(started) - set(came))[:3]}, beside {sorted(set(came) - set(started))[:3]}")
hold("a port that is opened", told("Listening Ports", 1) == ["8088:/opt/listener"], told("Listening Ports", 1))
connections = told("TCP Connections", 1)
hold("the caller's connection has the caller's name", connections.count("192.0.2.7:8088:/opt/caller") == 1, connections)
hold("the listener's connection has the listener's name", connections.count("192.0.2.7:8088:/opt/listener") == 1, connections)
modules = [text for text in told("System") if text.startswith("kernel module")]
hold("a module that is loaded, and who did it", modules == ["kernel module dummy loaded by /bin/busybox"], modules)
losses = [match for match in (re.fullmatch(r"(\d+) events were lost - .*", text) for text in told("Monitoring Agent")) if match]
hold("a ring that overflows is told with its number", sum(int(match[1]) for match in losses) > 0, told("Monitoring Agent"))
gone = {text.rpartition(":")[0] for text in told("Running Processes")} - {text.rpartition(":")[0] for text in told("Running Processes", 1)}
hold("nothing goes that never came", gone <= {"/bin/busybox"}, gone)

grid = [row["cells"] for row in json.loads(read("grid.json"))["rows"]]
shown = {cell for cells in grid for cell in cells}
missing = [text for text in started + ["8088:/opt/listener"] + modules if text not in shown]
hold("the Administrator's grid shows the same", not missing, missing[:3])
hold("nothing was said on the way, and the end was in order", read("agent.txt") == "" and read("ended.txt").split() == ["0"],
     read("agent.txt") + read("ended.txt"))
sys.exit(broken > 0)
