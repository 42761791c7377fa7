#!/usr/bin/env python3
"""Checks the rules of the house that people forget. Says FILE:LINE and what is wrong, and ends with 1; or else prints
one line, the tests' share of the code."""
import pathlib
import re
import shutil
import subprocess
import sys

from cppsource import strip_comments

ROOT = pathlib.Path(__file__).resolve().parent.parent
SUBSYSTEMS = ("build", "complex", "elmath", "reductions", "indexing", "interp", "convolutions", "filter", "sorting")
LONGEST = 500
BACKEND = re.compile(r"__CUDACC__|__NVCC__|__CUDA_ARCH__|GPURUNTIME_BACKEND|GPURUNTIME_CUDA|GPURUNTIME_CPU"
                     r"|[<\"]cuda_runtime\w*\.h[>\"]|<<<|\b__(?:global|device|host|shared|constant)__\b")
UNWANTED = re.compile(r"\bspec\.md\b|\bthe\s+specification\b|\bPart \d+\.\d+\b|(?<![\w.])/(?:work|home|root)/\w",
                      re.IGNORECASE)

problems = []


def problem(path, line, text):
    problems.append("%s:%d: %s" % (path, line, text))


def matches(pattern, text):
    for match in pattern.finditer(text):
        yield text.count("\n", 0, match.start()) + 1, match.group()


def tracked():
    """All files that are or will be tracked, as paths relative to the root, with their text (binary ones left out)."""
    listed = subprocess.run(["git", "ls-files", "-co", "--exclude-standard", "-z"], cwd=ROOT, check=True,
                            capture_output=True, text=True).stdout
    files = {}
    for name in sorted(filter(None, listed.split("\0"))):
        path = ROOT / name
        if path.is_file():
            try:
                files[name] = path.read_text(encoding="utf-8")
            except UnicodeDecodeError:
                pass
    return files


def check_backend_named_once(sources):
    for name, text in sources.items():
        if not name.startswith("src/platform/"):
            for line, word in matches(BACKEND, strip_comments(text)):
                problem(name, line, "'%s' belongs under src/platform only" % word)


def check_no_operation_in_platform(sources):
    families = set()
    for name, text in sources.items():
        if re.match(r"include/gpuruntime/(%s)/" % "|".join(SUBSYSTEMS), name):
            families.update(re.findall(r"^(?:class|struct) (\w+)[^;{]*\{", strip_comments(text), re.MULTILINE))
    if not families:
        return
    anywhere = re.compile(r"\b(?:%s)\b" % "|".join(sorted(families)))
    for name, text in sources.items():
        if not name.startswith("src/platform/"):
            continue
        in_code = set(matches(anywhere, strip_comments(text)))
        # Single words, such as All, are English in a comment; compounds are names there too.
        in_comments = {(line, word) for line, word in matches(anywhere, text) if re.search(r".[A-Z0-9_]", word)}
        for line, word in sorted(in_code | in_comments):
            problem(name, line, "src/platform names the operation '%s'" % word)


def check_stems(sources):
    def demand(path, because):
        if path not in sources:
            problem(because, 1, "%s is missing" % path)

    for name in sources:
        if match := re.fullmatch(r"include/gpuruntime/(%s)/(\w+)\.hpp" % "|".join(SUBSYSTEMS), name):
            stem = "/".join(match.groups())
            demand("src/%s.cpp" % stem, name)
            demand("tests/%s_test.cpp" % stem, name)
            demand("benchmarks/%s_bench.cpp" % stem, name)
        elif match := re.fullmatch(r"src/((?:%s)/\w+)\.cpp" % "|".join(SUBSYSTEMS), name):
            demand("include/gpuruntime/%s.hpp" % match.group(1), name)
        elif match := re.fullmatch(r"src/(launcher/\w+)\.cpp", name):
            demand("include/gpuruntime/%s.hpp" % match.group(1), name)
            demand("tests/%s_test.cpp" % match.group(1), name)


def folder(name):
    """The room that a file of the library lies in: a layer, a subsystem, or 'base' for include/gpuruntime itself."""
    if name.startswith("src/platform/host/"):
        return "host"
    if re.fullmatch(r"src/platform/\w+/memory\.cpp", name):
        return "recipes"  # What a backend does for them; no part of the library.
    parts = name.split("/")[2 if name.startswith("include/") else 1:]
    if len(parts) > 1:
        return parts[0]
    return "umbrella" if parts[0] == "gpuruntime.hpp" else "base"


def may_include(room):
    below = {
        "base": {"base"},
        "platform": {"platform", "base"},
        "host": {"host", "util", "base"},  # The errors that it throws are declared in util.
        "gpucommon": {"gpucommon", "platform", "host", "base"},
        "util": {"util", "gpucommon", "platform", "host", "base"},
        "launcher": {"launcher", "util", "gpucommon", "platform", "host", "base"},
        "umbrella": set(SUBSYSTEMS) | {"util", "base"},
        "recipes": set(SUBSYSTEMS) | {"recipes", "umbrella", "util", "platform", "base"},
    }
    return below.get(room, {room, "launcher", "util", "gpucommon", "platform", "host", "base"})


def resolve(includer, target, quoted, sources):
    """The file of the library that an #include names, or None: a header of the system."""
    here = includer.rsplit("/", 1)[0]
    places = ["include/" + target, "src/" + target, "src/platform/host/" + target, "src/platform/cpu/" + target,
              "src/platform/cuda/" + target]
    if quoted:
        places.insert(0, here + "/" + target)
    for place in places:
        clean = re.sub(r"[^/]+/\.\./", "", place)
        if clean in sources:
            return clean
    return None


def check_layers(sources):
    include = re.compile(r"^[ \t]*#[ \t]*include[ \t]*([<\"])([^>\"]+)[>\"]", re.MULTILINE)
    for name, text in sources.items():
        if not name.startswith(("include/", "src/")):
            continue
        room = folder(name)
        for match in include.finditer(strip_comments(text)):
            line = text.count("\n", 0, match.start()) + 1
            target = resolve(name, match.group(2), match.group(1) == '"', sources)
            if target is None:
                continue
            other = folder(target)
            if other not in may_include(room):
                problem(name, line, "%s doesn't include %s: layers look down only" % (room, other))
            internal = other in ("launcher", "platform", "host", "gpucommon")
            if internal and room != "launcher" and name.startswith("include/"):
                problem(name, line, "a public header includes %s, which callers don't have" % target)


def check_length(sources):
    for name, text in sources.items():
        lines = text.count("\n")
        if name.startswith(("include/", "src/")) and lines > LONGEST and "// Long because: " not in text:
            problem(name, LONGEST, "%d lines: split it by meaning, or say '// Long because: ...'" % lines)


def check_format(sources):
    program = shutil.which("clang-format-14") or shutil.which("clang-format")
    if not program:
        problem("scripts/checkhouse.py", 1, "clang-format is missing: install the package clang-format-14")
        return
    result = subprocess.run([program, "--dry-run", "-Werror", *sources], cwd=ROOT, capture_output=True, text=True)
    for name, line in dict(reversed(re.findall(r"^(.+?):(\d+):\d+: error:", result.stderr, re.MULTILINE))).items():
        problem(name, int(line), "not formatted: make format")
    if result.returncode and not result.stderr.count("error:"):
        problem("scripts/checkhouse.py", 1, result.stderr.strip())


def check_words(files):
    for name, text in files.items():
        for line, word in matches(UNWANTED, text):
            problem(name, line, "'%s' has no place in the tree" % word.strip())


def share_of_tests(sources):
    def lines(*folders):
        return sum(1 for name, text in sources.items() if name.startswith(folders)
                   for line in strip_comments(text).splitlines() if line.strip())
    tests, code = lines("tests/"), lines("include/", "src/")
    return "tests: %d lines, %.0f %% of the %d lines of include and src" % (tests, 100 * tests / code, code)


def main():
    files = tracked()
    sources = {name: text for name, text in files.items()
               if name.startswith(("include/", "src/", "tests/", "benchmarks/", "examples/"))
               and name.endswith((".hpp", ".cpp"))}
    check_backend_named_once(sources)
    check_no_operation_in_platform(sources)
    check_stems(sources)
    check_layers(sources)
    check_length(sources)
    check_format(sources)
    check_words(files)
    print("\n".join(problems) if problems else share_of_tests(sources))
    return int(bool(problems))


if __name__ == "__main__":
    sys.exit(main())
