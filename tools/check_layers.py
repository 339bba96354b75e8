#!/usr/bin/env python3
"""Checks how the program's folders include each other.

The rules:
  1. base/ is the bottom: it includes nothing of the project but itself.
  2. The engine (filters/, video/, gps/) includes only base/, persistence/
     and the engine, so that it links and is tested without any window of
     the program's own.
  3. No circle of files: a header and its source file count as one unit,
     and no unit reaches itself again through the includes of units.

Prints every include that breaks a rule, and exits 1 when there is one.

  python3 tools/check_layers.py                 check the tree this script is in
  python3 tools/check_layers.py --counts        also print folder-to-folder counts
  python3 tools/check_layers.py --root DIR      check another checkout
"""
import argparse
import os
import re
import sys
from collections import defaultdict

FOLDERS = ["base", "filters", "persistence", "video", "gps", "ui", "events", "app"]
ENGINE = {"filters", "video", "gps"}
ENGINE_MAY_INCLUDE = {"base", "persistence"} | ENGINE

# (including file, included file): reason. An exception is for a case the
# rules can't express; none is needed today.
EXCEPTIONS = {}

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"')


def product_files(root):
    for folder in FOLDERS:
        top = os.path.join(root, folder)
        for directory, _, names in os.walk(top):
            for name in sorted(names):
                if name.endswith((".h", ".cpp")):
                    path = os.path.join(directory, name)
                    yield os.path.relpath(path, root).replace(os.sep, "/")


def includes_of(root, path):
    """(line number, included path) for each include of a project file."""
    found = []
    with open(os.path.join(root, path), encoding="utf-8", errors="replace") as source:
        for number, line in enumerate(source, 1):
            match = INCLUDE.match(line)
            if match and match.group(1).split("/")[0] in FOLDERS:
                found.append((number, match.group(1)))
    return found


def unit(path):
    return os.path.splitext(path)[0]


def folder(path):
    return path.split("/")[0]


def rule_breaks(path, included):
    source, target = folder(path), folder(included)
    if source == "base" and target != "base":
        return "base/ includes nothing of the project"
    if source in ENGINE and target not in ENGINE_MAY_INCLUDE:
        return "the engine includes only base/, persistence/ and the engine"
    return None


def circles(edges):
    """The strongly connected groups of more than one unit (Tarjan)."""
    index = {}
    low = {}
    stack = []
    on_stack = set()
    groups = []
    counter = [0]

    def visit(node):
        # An explicit stack: the include graph can be deeper than Python's
        # recursion allows on a bad day.
        work = [(node, iter(sorted(edges[node])))]
        index[node] = low[node] = counter[0]
        counter[0] += 1
        stack.append(node)
        on_stack.add(node)
        while work:
            current, children = work[-1]
            advanced = False
            for child in children:
                if child not in index:
                    index[child] = low[child] = counter[0]
                    counter[0] += 1
                    stack.append(child)
                    on_stack.add(child)
                    work.append((child, iter(sorted(edges[child]))))
                    advanced = True
                    break
                if child in on_stack:
                    low[current] = min(low[current], index[child])
            if advanced:
                continue
            work.pop()
            if work:
                parent = work[-1][0]
                low[parent] = min(low[parent], low[current])
            if low[current] == index[current]:
                group = []
                while True:
                    member = stack.pop()
                    on_stack.discard(member)
                    group.append(member)
                    if member == current:
                        break
                if len(group) > 1:
                    groups.append(sorted(group))

    for node in sorted(edges):
        if node not in index:
            visit(node)
    return groups


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--root", default=os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))
    parser.add_argument("--counts", action="store_true", help="print folder-to-folder include counts")
    arguments = parser.parse_args()
    root = os.path.abspath(arguments.root)

    problems = []
    edges = defaultdict(set)
    where = {}
    counts = defaultdict(int)
    for path in product_files(root):
        edges[unit(path)]
        for number, included in includes_of(root, path):
            counts[(folder(path), folder(included))] += 1
            if unit(included) != unit(path):
                edges[unit(path)].add(unit(included))
                where.setdefault((unit(path), unit(included)), f"{path}:{number}")
            reason = rule_breaks(path, included)
            if reason and (path, included) not in EXCEPTIONS:
                problems.append(f"{path}:{number}: includes \"{included}\": {reason}")

    for group in circles(edges):
        members = set(group)
        links = sorted(
            f"{where[(a, b)]} -> {b}" for a in group for b in edges[a] if b in members and (a, b) in where
        )
        problems.append("circle of files: " + ", ".join(group) + "\n    " + "\n    ".join(links))

    if arguments.counts:
        present = [name for name in FOLDERS if os.path.isdir(os.path.join(root, name))]
        arrows = sum(1 for (a, b) in counts if a != b)
        print("includes by folder (row includes column):")
        print("%-12s" % "" + "".join("%12s" % name for name in present))
        for a in present:
            print("%-12s" % a + "".join("%12s" % (counts.get((a, b), "") or ".") for b in present))
        upward = sum(1 for (a, b) in counts if a != b and FOLDERS.index(b) > FOLDERS.index(a))
        print(f"{arrows} arrows between folders, {upward} of them from a lower folder to a higher one "
              f"(order: {' < '.join(FOLDERS)})")

    for problem in problems:
        print(problem)
    if problems:
        print(f"{len(problems)} layering problem(s)")
        return 1
    print("layering: no problems")
    return 0


if __name__ == "__main__":
    sys.exit(main())
