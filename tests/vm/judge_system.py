#!/usr/bin/env python3
"""Judges what came of the services on a Debian with its service manager, bus and polkit.

Usage: judge_system.py FOLDER. FOLDER holds what the machine of stage two handed back. Prints each thing that is held;
exits 1 when one is not.
"""
import json
import pathlib
import sys

RIGHTS = {"CAP_DAC_READ_SEARCH": 2, "CAP_SYS_PTRACE": 19, "CAP_PERFMON": 38, "CAP_BPF": 39}
# Of what sandbox_probe tries, what each service is let do; all else is refused.
LET = {
    "zendrix": {"write its folder", "write home", "write the record", "write the log", "read a home", "read the passwords"},
    "zendrix-mail": {"write /tmp", "write /var/tmp", "write /dev/shm", "write the log", "reach the network"},
    "zendrix-act": {"write /usr", "write /etc", "write /home", "write /root", "write /tmp", "write /var/tmp", "write /dev/shm",
                    "write /var/lib", "write /run", "write a home", "write its folder", "look into the quarantine",
                    "move the quarantine away", "read a home", "read the passwords", "a setuid file", "end another's program"},
}
FOLDERS = {
    "": "drwxrwx--t root:zendrix-state",
    "home": "drwxr-s--- zendrix:zendrix",
    "admin": "drwxr-s--- zendrix:zendrix",
    "quarantine": "drwx------ root:root",
    "decisions": "drwxr-s--- root:zendrix",
    "decisions/KorvessaActivations.kvl": "-rw-r----- root:zendrix",
    "mail": "drwx------ zendrix-mail:zendrix-mail",
    "home/KorvessaMonitoring.kvl": "-rw-r----- zendrix:zendrix",
    "admin/KorvessaMonitoring.kvl": "-rw-r----- zendrix:zendrix",
    "zendrix-baseline.db": "-rw-r----- zendrix:zendrix",
}

folder = pathlib.Path(sys.argv[1])
broken = 0


def hold(what, fine, found=""):
    global broken
    broken += not fine
    print(f"{'holds ' if fine else 'BROKEN'}  {what}{'' if fine else f': found {found}'}")


def read(name):
    return (folder / name).read_text(encoding="utf-8")


def lines(name):
    return read(name).splitlines()


hold("the Agent starts with the computer", read("active.txt").split() == ["active"], read("active.txt"))
hold("no unit failed", read("failed.txt") == "", read("failed.txt"))
rights = dict(line.split(":", 1) for line in lines("rights.txt"))
wanted = f"{sum(1 << number for number in RIGHTS.values()):016x}"
caps = {name: value.strip() for name, value in rights.items() if name.startswith("Cap")}
hold("it has these rights and no others: " + ", ".join(RIGHTS), len(caps) == 5 and set(caps.values()) == {wanted}, caps)
hold("it is an ordinary user, without new rights, behind a filter of system calls",
     "0" not in rights["Uid"].split() and rights["NoNewPrivs"].strip() == "1" and rights["Seccomp"].strip() == "2", rights)
told_how = json.loads(read("status.json"))["levels"]
levels = {level["watched"]: level["level"] for level in told_how}
hold("programs, ports, connections and modules are told by the kernel",
     [levels.get(name) for name in ("Running Processes", "Listening Ports", "TCP Connections", "System (kernel modules)")]
     == ["events"] * 4, levels)
hold("log-ins are told by logind", [level["how"] for level in told_how if level["watched"] == "Logged-On Users"] == ["logind"], told_how)
hold("every other monitor sees something", "none" not in levels.values(), levels)

home = json.loads(read("home.json"))
rows = [dict(zip(home["columns"], row)) for row in home["rows"]]
came = [(row["Monitor"], row["Description"]) for row in rows if row["Change"].startswith("1.")]
hold("a program of the computer has its own name, from inside the sandbox",
     came.count(("Running Processes", read("program.txt").strip())) == 1, [text for text in came if "of-the-host" in text[1]])
hold("a new account", ("System Users", "mallory") in came, came)
hold("an autostart entry in somebody's home", any(monitor == "Autorun Registry" and text.startswith("/home/ann/.config/autostart/own.desktop=")
                                                   for monitor, text in came), came)
hold("a line of cron's", ("Windows Folder", "/etc/cron.d/own-line") in came, came)
hold("a unit that starts with the computer",
     ("Autorun Registry", "/etc/systemd/system/multi-user.target.wants/own.service=/opt/of-the-host") in came, came)
hold("a user who logs on, and off again",
     ("Logged-On Users", "ann on tty1") in came and any(row["Monitor"] == "Logged-On Users" and row["Change"].startswith("-1.")
                                                     and row["Description"] == "ann on tty1" for row in rows), came)
log = (folder / "log.txt").read_text(encoding="cp1252")
hold("the mailer's lines are in the log also after the Agent has begun it anew",
     "told by the mailer" in log.splitlines() and "xxxx" not in log and int(read("log_old.txt")) >= 4194304,
     (log[-300:], read("log_old.txt")))
began, raised = map(float, read("newprog.txt").split())
named = [row for row in rows if row["Monitor"] == "Aggregation" and "/tmp/newprog" in row["Description"]]
facts = "; ".join(row["Reaction"] for row in named)
hold("a new program from /tmp that listens and has itself started is an alert with these three facts within 10 s",
     raised - began < 10 and any(float(row["Change"]) >= 0.95 for row in named) and "/tmp" in facts and "4444" in facts and "starts by itself" in facts,
     (raised - began, facts))
strangers = [row["Description"] for row in rows if row["Monitor"] == "Running Processes" and "mount namespace" in row["Description"]]
hold("no program of the computer is taken for one of a container", not strangers, strangers)

for service, let in LET.items():
    answers = dict(line.rsplit(": ", 1) for line in lines(f"probe-{service}.txt"))
    found = {what for what, answer in answers.items() if answer == "let"}
    hold(f"{service}: of {len(answers)} things that a service should not do, it is let do {len(let)}, which are its work",
         len(answers) == 28 and found == let, f"{len(answers)} tried; let beside: {found - let}, refused: {let - found}")

hold("before, the console finds it running and started with the computer", lines("state_before.txt") == ["Running Auto"], read("state_before.txt"))
hold("an ordinary user with nobody to ask may not stop it", lines("stop_unasked.txt") == ["2"], read("stop_unasked.txt"))
hold("polkit asks, and the wrong password does not stop it", lines("stop_wrong.txt") == ["asked: yes", "said: 2", "active"], read("stop_wrong.txt"))
hold("polkit asks, and an administrator's password stops it", lines("stop.txt") == ["asked: yes", "said: 0", "Stopped Auto"], read("stop.txt"))
hold("and starts it again", lines("start.txt") == ["asked: yes", "said: 0", "Running Auto"], read("start.txt"))
hold("which begins a second session", sum(row["Description"] == "Begin Session Refresh." for row in rows) == 2)



def acted(name):
    """(asked, done, sentence, file, process) of a call to the helper; its answer is "bay true 3 65 66 67"."""
    found = dict(line.split(": ", 1) for line in lines(f"{name}.txt") if ": " in line)
    words = next((line for line in lines(f"{name}.txt") if line.startswith(("bay ", "said: bay "))), "").removeprefix("said: ").split()
    sentence = bytes(int(word) for word in words[3:]).decode("cp1252") if len(words) > 2 else ""
    return found.get("asked", "no") == "yes", words[1:2] == ["true"], sentence, found.get("file"), found.get("process")


THERE = ("4711 root", "/var/tmp/.cache/updater")
GONE = ("gone", "gone")
for name, what, wanted in [
    ("block_unasked", "a program of root's is not blocked when nobody can be asked", (False, False, "nobody here who can be asked", *THERE)),
    ("block_wrong", "nor with the wrong password", (True, False, "You have no permission", *THERE)),
    ("block_invented", "nor what the Agent never told of, and nobody is asked", (False, False, "The Agent has not told of this event", *THERE)),
    ("block", "with an administrator's password it goes to quarantine and its process ends", (True, True, "was moved to quarantine", *GONE)),
    ("allow_unasked", "it does not come back when nobody can be asked", (False, False, "nobody here who can be asked", *GONE)),
    ("allow", "with an administrator's password it comes back as root's, with the rights that it had", (True, True, "", "4711 root", "gone")),
    ("block_session", "in front of the screen the user's own password does", (True, True, "was moved to quarantine", *GONE)),
]:
    found = acted(name)
    hold(what, all(part in is_ if isinstance(part, str) else part == is_ for part, is_ in zip(wanted, found)), found)
shown = " ".join(message["text"] for message in json.loads(read("click.json"))["messages"])
clicked = acted("block_click")
hold("so it is by a click on the alert's page", clicked[0] and clicked[3:] == GONE and "was moved to quarantine" in shown, (clicked, shown))
hold("whoever had a program blocked sees it in the list", "/var/tmp/.cache/updater" in acted("list")[2], acted("list"))
hold("so does an administrator, and nobody else", "/var/tmp/.cache/updater" in acted("list_bea")[2]
     and acted("list_mallory")[1:3] == (True, ""), (acted("list_bea"), acted("list_mallory")))
hold("an alert is not decided when nobody can be asked", acted("decide_unasked")[:2] == (False, False), read("decide_unasked.txt"))
for name, what, asked in [("block", "who has just blocked its program is not asked for the decision", False),
                          ("allow", "an administrator decides to allow it", True)]:
    hold(f"{what}, and the Agent follows it",
         acted(f"decide_{name}")[:2] == (asked, True) and f"followed: {name}" in lines(f"decide_{name}.txt"), read(f"decide_{name}.txt"))
hold("only the Agent may have a block done again", read("again_by_user.txt").strip() == "Call failed: Access denied", read("again_by_user.txt"))
hold("the helper ends when there is no more to do", read("helper.txt").split() == ["inactive"], read("helper.txt"))

hold("settings of e-mail are not laid down when nobody can be asked",
     not acted("mail_unasked")[1] and "KorvessaSMTPConfig" not in read("mail_unasked.txt"), read("mail_unasked.txt"))
hold("with an administrator's password they are, for the mailer alone to read", acted("set_mail")[:2] == (True, True) and lines("mail_files.txt")
     == [f"/etc/zendrix/KorvessaSMTPConfig.{end} -rw-r----- root:zendrix-mail" for end in ("kvh", "kvl")], (acted("set_mail"), read("mail_files.txt")))
rights = dict(line.split(":", 1) for line in lines("mail_rights.txt"))
hold("the mailer begins when its settings are laid down, without any right",
     {value.strip() for name, value in rights.items() if name.startswith("Cap")} == {"0" * 16} and rights["NoNewPrivs"].strip() == "1", rights)
mails = read("mails.txt") if (folder / "mails.txt").exists() else ""
hold("an alert is mailed to the address in them", "To: <ann@example.org>" in mails or "To: ann@example.org" in mails, mails[:400])

if (folder / "installed_alerts.json").exists():
    items = json.loads(read("installed_alerts.json"))["items"]
    hold("installed, the console shows a member of the group this computer's alerts",
         any(item["EventType"] == "Intrusion" and item["Status"] == "Allowed" for item in items), items[:3])
    hold("the Administrator's its events", "/opt/of-the-host" in read("installed_grid.json"), read("installed_grid.json")[:300])
    hold("without an error message, and the Agent is found running", "Invalid configuration" not in read("installed_status.json")
         and "adduser" not in read("installed_status.json"), read("installed_status.json")[:600])
    hold("whoever is not in the group is told what to do", "adduser mallory zendrix" in read("installed_outsider.json"), read("installed_outsider.json")[:600])
found = {line.split(" ", 1)[0]: line.split(" ", 1)[1] for line in lines("rights_of_files.txt")}
wrong = {path: found.get(path) for path, wanted in FOLDERS.items() if found.get(path) != wanted}
hold("the rights of files and folders", not wrong, wrong)
others = [line for line in lines("rights_of_files.txt") if line.split(" ")[1][7:9] != "--"]
hold("nobody but the group reads anything", not others, others)
sys.exit(broken > 0)
