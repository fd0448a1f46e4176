#!/usr/bin/python3
"""Compares the days on which tempoline-cli lists appointments with the days that an independent reader finds in
the iCalendar file that it exports, over 20 years: ical_days.py CLI [CALENDAR]. Without a calendar a random one
is made, by the clock of the process. Exits with 77 where the reader is missing."""
import collections
import datetime
import json
import os
import random
import subprocess
import sys
import tempfile

SKIPPED = 77
try:
    import icalendar
    import recurring_ical_events
except ImportError as error:
    print(f"skipped: {error} (python3-icalendar, python3-recurring-ical-events)")
    sys.exit(SKIPPED)

DAY = datetime.timedelta(days=1)
WEEKDAYS = ["sun", "mon", "tue", "wed", "thu", "fri", "sat"]


def run(*words):
    return subprocess.run(words, check=True, capture_output=True, text=True).stdout


def fill(cli, path, first, last):
    """Adds 150 appointments of all kinds."""
    run(cli, "new", path)
    for number in range(150):
        date = first + DAY * random.randrange((last - first).days)
        words = [cli, "add", path, "--date", str(date), "--subject", f"No. {number}; a, b \\ \u00e9"]
        if random.random() < 0.3:
            words += ["--all-day"]
        else:
            start = random.randrange(288)
            end = min(287, start + random.randrange(40))
            for option, slot in ("--start", start), ("--end", end):
                words += [option, f"{slot // 12:02}:{slot % 12 * 5:02}"]
        if number % 3 != 0:
            every = random.choice([1, 1, 2, 3, 7, random.randrange(1, 100)])
            days = random.sample(WEEKDAYS, random.randrange(1, 7))
            rule = random.choice(["daily:{}", "weekly:{}", "weekly:{}:" + ",".join(days), "monthly:{}", "yearly:{}"])
            words += ["--repeat", rule.format(every)]
            if random.random() < 0.7:
                words += ["--until", str(min(last, date + DAY * random.randrange(3000)))]
        run(*words)


def listed(cli, path, first, last):
    rows = json.loads(run(cli, "list", path, "--from", str(first), "--to", str(last), "--format", "json"))
    return collections.Counter((row["date"], None if row["allDay"] else row["start"], row["subject"]) for row in rows)


def read(path, first, last):
    with open(path, "rb") as file:
        calendar = icalendar.Calendar.from_ical(file.read())
    found = collections.Counter()
    for component in calendar.walk():
        assert not component.errors, component.errors
    for event in recurring_ical_events.of(calendar).between(first, last + DAY):
        start = event["DTSTART"].dt
        timed = isinstance(start, datetime.datetime)
        date = start.date() if timed else start
        subject = str(event.get("SUMMARY", ""))
        found[(str(date), f"{start:%H:%M}" if timed else None, subject)] += 1
    return found


def main():
    cli = sys.argv[1]
    seed = int(os.environ.get("DAYBRIX_SEED", "1"))
    random.seed(seed)
    early = os.environ.get("DAYBRIX_CLOCK", "2026") < "2021"
    first = datetime.date(2001 if early else 2025, 1, 1)
    last = datetime.date(first.year + 19, 12, 31)
    with tempfile.TemporaryDirectory() as folder:
        path = sys.argv[2] if len(sys.argv) > 2 else os.path.join(folder, "random.cld")
        if len(sys.argv) <= 2:
            fill(cli, path, first, last)
        exported = os.path.join(folder, "out.ics")
        run(cli, "export", path, exported)
        ours = listed(cli, path, first, last)
        theirs = read(exported, first, last)
    print(f"seed {seed}: {sum(ours.values())} rows listed, {sum(theirs.values())} found")
    for name, rows in ("only listed", ours - theirs), ("only found", theirs - ours):
        for row in sorted(rows, key=str)[:10]:
            print(name, *row)
    return ours != theirs or not ours


if __name__ == "__main__":
    sys.exit(main())
