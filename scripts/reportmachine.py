"""Facts that stand in the report beside the timings: the machine, the library's size, its first call."""
import json
import os
import pathlib
import platform
import re
import subprocess
import time

from reportdata import ROOT

BUILD_TIMES = ROOT / "docs" / "measurements" / "buildtime.json"
LIBRARY = "libzqgpuruntime.so"
FIRST_CALLS = 11


def output(*command):
    try:
        return subprocess.run(command, check=True, capture_output=True, text=True, cwd=ROOT).stdout.strip()
    except (OSError, subprocess.CalledProcessError):
        return ""


def found(pattern, text, default=""):
    match = re.search(pattern, text, re.MULTILINE)
    return match.group(1).strip() if match else default


def text_of(file):
    try:
        return pathlib.Path(file).read_text()
    except OSError:
        return ""


def machine():
    """Rows of the table that says what was measured on."""
    lscpu = output("lscpu")
    cores = os.cpu_count()
    processor = found(r"^Model name:\s*(.*)", lscpu, platform.processor() or platform.machine())
    family = ", ".join("%s %s" % (word, value) for word, value in (
        ("family", found(r"^CPU family:\s*(.*)", lscpu)), ("model", found(r"^Model:\s*(.*)", lscpu))) if value)
    vectors = [level for level, flag in (("AVX-512", "avx512f"), ("AVX2", "avx2"), ("NEON", "asimd"))
               if re.search(r"\b%s\b" % flag, lscpu)]
    caches = ["%s %s" % (level, found(r"^%s cache:\s*(.*)" % level, lscpu)) for level in ("L1d", "L2", "L3")]
    memory = found(r"^MemTotal:\s*(\d+)", text_of("/proc/meminfo"))
    hypervisor = found(r"^Hypervisor vendor:\s*(.*)", lscpu)
    return {
        "processor": "%s (%s%s)" % (processor, family, ", " + vectors[0] if vectors else ""),
        "cores": "%d%s" % (cores, ", of a virtual machine (%s) whose bus others may share" % hypervisor
                           if hypervisor else ""),
        "caches": ", ".join(caches),
        "memory": "%d GiB" % round(int(memory) / 2**20) if memory else "unknown",
        "system": "%s, Linux %s" % (found(r'^PRETTY_NAME="(.*)"', text_of("/etc/os-release")), platform.release()),
    }


def compiler(build):
    cache = text_of(build / "CMakeCache.txt")
    program = found(r"^CMAKE_CXX_COMPILER:\w+=(.*)", cache, "c++")
    version = output(program, "--version").splitlines()
    level = found(r"^GPURUNTIME_VECTOR_LEVEL:\w+=(.*)", cache, "native")
    return "%s, -march=%s" % (version[0] if version else program, level)


def library(build):
    """Bytes of the library's file and of its code and constants, or None if it was not built."""
    file = build / "src" / LIBRARY
    if not file.exists():
        return None
    rows = output("size", str(file)).splitlines()
    return {"file": file.stat().st_size, "text": int(rows[1].split()[0]) if len(rows) > 1 else None}


def exports():
    """Numbers of exported names, of operations (members of families) and of families."""
    names = text_of(ROOT / "tests" / "export" / "exports.txt").splitlines()
    operations = [name for name in names if re.search(r"::Invoker<.*>::operator\(\)", name)]
    families = {re.match(r"gpuruntime::(\w+)", name).group(1) for name in operations}
    return {"names": len(names), "operations": len(operations), "families": len(families)}


def first_calls(program):
    """Seconds of the first and the second call of fresh processes, and of the whole process, by number of elements."""
    calls = {}
    for count in (1, 1 << 20):
        rows = []
        for _ in range(FIRST_CALLS):
            start = time.perf_counter()
            told = subprocess.run([program, str(count)], check=True, capture_output=True, text=True).stdout
            rows.append([1e-9 * float(line) for line in told.split()] + [time.perf_counter() - start])
        calls[str(count)] = dict(zip(("first", "second", "process"), map(list, zip(*rows))))
    return calls


def versions():
    """The peers that are at hand, with their versions, and those that are not."""
    rows = {}
    for module, name in (("numpy", "NumPy"), ("scipy", "SciPy"), ("cv2", "OpenCV"), ("arrayfire", "ArrayFire")):
        try:
            rows[name] = __import__(module).__version__
        except ImportError:
            rows[name] = None
    return rows


def collect(build, first_call_program):
    """Everything, ready for JSON."""
    times = json.loads(BUILD_TIMES.read_text()) if BUILD_TIMES.exists() else {}
    libraries = {}
    for backend in ("cpu", "cuda"):
        libraries[backend] = library(build.parent / backend) or times.get(backend, {}).get("library")
    return {"machine": machine(), "compiler": compiler(build), "libraries": libraries, "buildTimes": times,
            "exports": exports(), "firstCalls": first_calls(first_call_program), "versions": versions(),
            "date": time.strftime("%Y-%m-%d"), "load": os.getloadavg()[0],
            "commit": output("git", "describe", "--always", "--dirty")}
