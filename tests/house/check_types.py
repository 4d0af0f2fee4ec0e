"""Types of one source file belong in an anonymous namespace: two files that give one name to different types
would share constructors and destructors, and the linker keeps only one of them.

    check_types.py ROOT
"""
import pathlib
import re
import sys

TYPE = re.compile(r"(template *<.*> *)?(struct|class|union|enum( class| struct)?) +(?P<name>\w+)[^;()]*\{")


def loose_types(text):
    """(line number, name) of each type that a file defines at its outermost level outside `namespace {`."""
    inside = False
    for number, line in enumerate(text.splitlines(), 1):
        if re.match(r"namespace( \w+)? \{", line):
            inside = True
        elif line.startswith("}  // namespace"):
            inside = False
        elif not inside and (found := TYPE.match(line)):
            yield number, found["name"]


def main():
    root = pathlib.Path(sys.argv[1])
    files = [f for folder in ("src", "tools", "tests", "bench", "fuzz") for f in sorted((root / folder).rglob("*.cpp"))]
    faults = [f"{f.relative_to(root)}:{n}: {name} is not in an anonymous namespace" for f in files for n, name in loose_types(f.read_text())]
    assert list(loose_types("struct A {\n};\nnamespace {\nstruct B {\n};\n}  // namespace\nenum class C { X };\n")) == [(1, "A"), (7, "C")]
    print("\n".join(faults) or f"{len(files)} files: no type of one file can be seen by another")
    return 1 if faults or len(files) < 100 else 0


sys.exit(main())
