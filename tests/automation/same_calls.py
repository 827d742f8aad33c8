"""Checks that two examples in Basic call the server in the same way: same_calls.py IDL ONE OTHER

What is compared is the order of the classes made and the members used, each with its object and its arguments, and
where reading starts. Members of an enumeration count as their numbers, New as CreateObject; how a program reports
failures is its own business.
"""

import pathlib
import re
import sys


def enumerations(idl):
    return {f"{name}.{member}".lower(): value
            for name, body in re.findall(r"enum (\w+) \{(.*?)\}", idl, re.S)
            for member, value in re.findall(r"MEMBER\(\w+, (\w+)\) = (\d+)", body)}


def statements(text):
    """The program's statements without comments, what is declared, and what it does about failures."""
    for line in text.splitlines():
        line = re.sub(r"""^((?:[^"']|"[^"]*")*)'.*""", r"\1", line).strip()
        if re.match(r"(private |public )?sub fail\b", line, re.I):
            return
        if not re.match(r"(dim|option|attribute|public|private|end)\b", line, re.I):
            yield re.sub(r" then fail .*$", "", line, flags=re.I)


def arguments(text, start):
    """The arguments in the brackets that open at start."""
    depth = 0
    for position in range(start, len(text)):
        depth += (text[position] == "(") - (text[position] == ")")
        if depth == 0:
            return text[start:position + 1]
    sys.exit(f"no bracket closes in: {text}")


def calls(path, numbers):
    found = []
    for line in statements(path.read_text(encoding="latin-1")):
        line = re.sub(r'createobject\("(vnzel10cmn\.\w+)"\)', r"new \1", line, flags=re.I)
        made = re.match(r"set (\w+) = new vnzel10cmn\.(\w+)$", line, re.I)
        if made:
            found.append(f"{made.group(1)} = new {made.group(2)}".lower())
            continue
        for name, number in numbers.items():
            line = re.sub(rf"\b{re.escape(name)}\b", number, line, flags=re.I)
        if re.match(r"start = ", line, re.I):
            found.append(line.lower())
        for use in re.finditer(r"\b(booking|item|rates|helper)\.(\w+)(\(| = )?", line, re.I):
            call = f"{use.group(1)}.{use.group(2)}".lower()
            if use.group(3) == "(":
                call += arguments(line, use.end() - 1)
            elif use.group(3):
                call += line[use.end() - 3:]
            # Names of variables have no case in Basic, texts have.
            found.append(re.sub(r'"[^"]*"|[^"]+', lambda part: part[0] if part[0][0] == '"' else part[0].lower(), call))
    return found


def main():
    numbers = enumerations(pathlib.Path(sys.argv[1]).read_text(encoding="utf-8"))
    one, other = (calls(pathlib.Path(path), numbers) for path in sys.argv[2:])
    if len(one) < 10:
        sys.exit(f"{sys.argv[2]} calls nothing")
    for position in range(max(len(one), len(other))):
        pair = [calls[position] if position < len(calls) else "nothing" for calls in (one, other)]
        if pair[0] != pair[1]:
            sys.exit(f"call {position + 1} is {pair[0]} in one and {pair[1]} in the other")
    print(f"{len(one)} calls are the same")


if __name__ == "__main__":
    main()
