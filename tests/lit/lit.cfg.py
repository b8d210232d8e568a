import os
import shutil
import lit.formats

config.name = "ondrel"
config.test_format = lit.formats.ShTest(execute_external=True)
config.suffixes = [".test", ".c"]
config.excludes = ["Inputs"]
config.test_source_root = os.path.dirname(__file__)
config.test_exec_root = os.path.join(config.ondrel_bin_root, "tests", "lit")

bindir = config.ondrel_bin_root
config.substitutions.append(("%ondrel-opt", os.path.join(bindir, "ondrel-opt")))
config.substitutions.append(("%ondrel-cfe", os.path.join(bindir, "ondrel-cfe")))
config.substitutions.append(("%ondrel-dump", os.path.join(bindir, "ondrel-dump")))
config.substitutions.append(("%ondrel-run", os.path.join(bindir, "ondrel-run")))
config.substitutions.append(("%bisect", "python3 " + os.path.join(config.ondrel_src_root, "tests", "diff", "bisect") + " --bin " + bindir))
config.substitutions.append(("%mkif", "python3 " + os.path.join(config.test_source_root, "Inputs", "mkif.py")))
config.substitutions.append(("%inputs", os.path.join(config.test_source_root, "Inputs")))
config.substitutions.append(("FileCheck", "FileCheck-14"))
config.substitutions.append(("%python", "python3"))
config.environment["PATH"] = bindir + os.pathsep + config.environment.get("PATH", "")
config.substitutions.append(("%status", "sh " + os.path.join(config.test_source_root, "Inputs", "status.sh")))
config.substitutions.append(("%not", "/usr/lib/llvm-14/bin/not"))

# Random programs come from Debian's csmith where it is installed.
if shutil.which("csmith"):
    config.available_features.add("csmith")
