#!/usr/bin/env python3
"""buildtime.py BACKEND...: times a full build of the library, cpu or cuda, without the compiler cache, and keeps what it
took and the size of the result in docs/measurements/buildtime.json, from where the report takes it."""
import json
import os
import pathlib
import shutil
import subprocess
import sys
import time

from reportmachine import BUILD_TIMES, compiler, library, machine
from reportdata import ROOT


def timed(backend):
    """Seconds of the build, which lies in a folder of its own, and the library's sizes."""
    build = ROOT / "out" / ("buildtime-" + backend)
    shutil.rmtree(build, ignore_errors=True)
    environment = {**os.environ, "CCACHE_DISABLE": "1"}
    nvcc = pathlib.Path("/usr/local/cuda/bin/nvcc")
    if backend == "cuda" and not shutil.which("nvcc") and nvcc.exists():
        environment["CUDACXX"] = str(nvcc)
    jobs = os.cpu_count()
    subprocess.run(["cmake", "--preset", backend, "-B", build], cwd=ROOT, env=environment, check=True)
    start = time.monotonic()
    subprocess.run(["cmake", "--build", build, "--target", "gpuruntime", "-j", str(jobs)], env=environment, check=True)
    spent = time.monotonic() - start
    row = {"seconds": round(spent), "jobs": jobs, "processor": machine()["processor"].split(" (")[0],
           "compiler": compiler(build), "date": time.strftime("%Y-%m-%d"), "library": library(build)}
    shutil.rmtree(build)
    return row


def main():
    if not sys.argv[1:] or set(sys.argv[1:]) - {"cpu", "cuda"}:
        sys.exit(__doc__)
    for backend in sys.argv[1:]:
        kept = json.loads(BUILD_TIMES.read_text()) if BUILD_TIMES.exists() else {}
        kept[backend] = timed(backend)
        BUILD_TIMES.write_text(json.dumps(kept, indent=2, sort_keys=True) + "\n")
        print("%s: %d s" % (backend, kept[backend]["seconds"]))


if __name__ == "__main__":
    main()
