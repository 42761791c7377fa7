#!/usr/bin/env python3
"""Writes and checks tests/export/exports.txt, the demangled names that the shared library exports.

    exportlist.py                     writes the list from the public headers and the table of element types
    exportlist.py --check             fails if the committed list is another
    exportlist.py --library FILE      fails if FILE exports other names than the committed list (--nm PROGRAM)
"""
import argparse
import itertools
import pathlib
import re
import subprocess
import sys

from cppsource import closing, strip_comments

ROOT = pathlib.Path(__file__).resolve().parent.parent
HEADERS = ROOT / "include" / "gpuruntime"
LIST_FILE = ROOT / "tests" / "export" / "exports.txt"
MOST_PRINTED = 20
NOT_FAMILIES = ("launcher", "recipes", "util")

STRING = "std::__cxx11::basic_string<char, std::char_traits<char>, std::allocator<char> > const&"
# What is exported beside the families.
FIXED = [
    "gpuruntime::MessageError::MessageError(%s, %s)" % (STRING, STRING),
    "gpuruntime::MessageError::~MessageError()",
    "gpuruntime::util::checkAndThrow(cudaError)",
    "gpuruntime::util::getCurrentDeviceProperties()",
    "typeinfo for gpuruntime::MessageError",
    "typeinfo name for gpuruntime::MessageError",
    "vtable for gpuruntime::MessageError",
]

ALIASES = {"cudaStream_t": "CUstream_st*", "cudaError_t": "cudaError", "std::size_t": "unsigned long",
           "FindFirstLast": "gpuruntime::FindFirstLast",
           "conv::OffsetsAndSzs": "gpuruntime::conv::OffsetsAndSzs",
           "convn::OffsetsAndSzs": "gpuruntime::convn::OffsetsAndSzs",
           "convolutioncommon::KernelType": "gpuruntime::convolutioncommon::KernelType",
           "convolutioncommon::PageOffsetInfo": "gpuruntime::convolutioncommon::PageOffsetInfo",
           "InterpType": "gpuruntime::InterpType"}
SIZES = "std::vector<unsigned long, std::allocator<unsigned long> > const&"
PARTS = {}  # The row of the table that a type stands in: its real and its complex type.
BUILT_IN = {"unsigned", "signed", "char", "short", "int", "long", "float", "double", "bool", "void"}


def type_lists():
    """The lists by name, RealNumericTypes and so on, each with its members in order."""
    text = strip_comments((HEADERS / "elementtypes.hpp").read_text()).replace("\\\n", " ")
    rows = [(real.strip(), cplx.strip()) for real, cplx in re.findall(r"\bROW\(X, A, ([^,()]+), ([^,()]+)\)", text)]
    macros = dict(re.findall(r"#define (GPURUNTIME_\w+_TYPES)\(X, A\) (.*)", text))

    def members(macro):
        found = []
        for name, arguments in re.findall(r"(\w+)\(([^()]*)\)", macros[macro]):
            if name == "X":
                found.append(arguments.split(",", 1)[1].strip())
            elif name == "GPURUNTIME_ELEMENT_ROWS":
                found += [row["_REAL_" not in arguments] for row in rows]
            else:
                found += members(name)
        return found

    for row in rows:
        PARTS.update({row[0]: row, row[1]: row})
    return {name: members(macro) for name, macro in re.findall(r"GPURUNTIME_DEFINE_LIST\((\w+), (\w+)\);", text)}


def built_in(words):
    """The one spelling of a built-in type, whatever the order and number of its words."""
    for core in ("char", "short", "float", "double", "bool", "void"):
        if core in words:
            signs = [word for word in ("signed", "unsigned") if word in words and (core, word) != ("short", "signed")]
            return " ".join(signs + [core])
    sign = ["unsigned"] if "unsigned" in words else []
    return " ".join(sign + (["long"] * words.count("long") or ["int"]))


def spell(parameter, types):
    """A parameter's type as a demangler spells it: `const T* a` with T = int is `int const*`."""
    parameter = parameter.split("=")[0]
    if re.match(r"const std::vector<unsigned long>&", parameter):
        return SIZES
    for name, value in types.items():
        parameter = re.sub(r"\b%s\b" % name, value, parameter)
    for alias, value in ALIASES.items():
        parameter = re.sub(r"(?<![\w:])%s\b" % alias, value, parameter)
    # Dependent types: the real type of the parts of T, the complex type of such parts, and the double of T's kind.
    for which in ("RealOf", "ComplexOf"):
        parameter = re.sub(r"\b(?:gpuruntime::)?%s<([\w\s]+)>" % which,
                           lambda match: PARTS[match.group(1).strip()][which == "ComplexOf"], parameter)
    parameter = re.sub(r"\bDoubleOf<([\w\s]+)>",
                       lambda match: "double2" if match.group(1) in (row[1] for row in PARTS.values()) else "double",
                       parameter)
    if vector := re.fullmatch(r"(const )?std::vector<(.*)>(&?) ?\w*", parameter.strip()):
        constant, element, reference = vector.groups()
        element = spell(element, types)
        return "std::vector<%s, std::allocator<%s> >%s" % (element, element, " const" * bool(constant and reference)
                                                           + reference)
    if not re.fullmatch(r"[\w:\s*&]+", parameter):
        raise ValueError("exportlist.py can't spell the parameter type '%s'" % parameter.strip())
    words, other, suffix, constant = [], "", "", False
    for token in re.findall(r"[\w:]+|[*&]", parameter):
        if token == "const":
            if suffix:
                suffix += " const"
            else:
                constant = True
        elif token in "*&":
            suffix += token
        elif token in BUILT_IN:
            words.append(token)
        elif not words and not other:
            other = token
    base = other or built_in(words)
    if not suffix:
        return base
    return base + (" const" if constant else "") + re.sub(r" const$", "", suffix)


def pass_members(macro):
    """The pairs of a type and a size that a macro X(A, T, N) of a header expands to."""
    macros = {}
    for header in HEADERS.glob("*/*.hpp"):
        text = strip_comments(header.read_text()).replace("\\\n", " ")
        macros.update((name, (split_parameters(names), body))
                      for name, names, body in re.findall(r"#define (GPURUNTIME_\w+)\(([^()]*)\) (.*)", text))

    def expanded(name, arguments):
        names, body = macros[name]
        values = dict(zip(names, arguments))
        for inner, given in re.findall(r"(\w+)\(([^()]*)\)", body):
            given = [values.get(argument, argument) for argument in split_parameters(given)]
            yield from [given[1:]] if inner == "X" else expanded(inner, given)

    return list(expanded(macro, ["X", "A"]))


def split_parameters(text):
    return [part for part in (part.strip() for part in re.sub(r"\s+", " ", text).split(",")) if part]


def functions(body):
    """The exported functions declared in a class body itself: (name, parameters, ' const' or '')."""
    pattern = r"\bGPURUNTIME_API\s+(?:static\s+)?[\w:\s*&<>,]*?(operator\(\)|\w+)\s*\(([^()]*)\)\s*(const)?[^;{]*;"
    return [(name, split_parameters(parameters), " const" if const else "")
            for name, parameters, const in re.findall(pattern, body)]


def classes(text):
    """Class definitions at the top of a text: (template parameters, name, body), and the text without their bodies."""
    found, rest, position = [], "", 0
    head = re.compile(r"(?:template\s*<([^<>]*)>\s*)?\b(?:class|struct)\s+(?:GPURUNTIME_API\s+)?(\w+)[^;{}()]*\{")
    while match := head.search(text, position):
        end = closing(text, match.end() - 1)
        parameters = [part.split()[-1] for part in split_parameters(match.group(1) or "")]
        found.append((parameters, match.group(2), text[match.end():end]))
        rest += text[position:match.start()]
        position = end + 1
    return found, rest + text[position:]


def generator_lists():
    """The lists of generators by name, each with its members in order."""
    text = strip_comments((HEADERS / "randgenerators.hpp").read_text())
    return {name: split_parameters(members) for name, members in re.findall(r"using (\w+) =\s*TypeList<([^<>]*)>;", text)}


def subscript_kinds():
    """The combinations of kinds of subscript, in order."""
    text = strip_comments((HEADERS / "subscriptkinds.hpp").read_text())
    return re.findall(r"\bX\(A, ([^,()]+), ([^,()]+), ([^,()]+)\)", text)


def size_lists(text):
    """The lists of sizes that a header declares, each with its members in order."""
    found = re.findall(r"using (\w+) =\s*TypeList<((?:mpl_::[^;]*))>;", strip_comments(text))
    return {name: re.findall(r"mpl_::\w+<[^<>]*>", members) for name, members in found}


def can_round(value, result):
    """What GPURUNTIME_FAMILY_ROUNDS asks for: both real or both complex, and the result not the wider."""
    rows = list(dict.fromkeys(PARTS.values()))
    kind, column = PARTS[value].index(value), PARTS[result].index(result)
    return kind == column and rows.index(PARTS[value]) <= rows.index(PARTS[result])


def invoker_names(family, spelled, given, parameters, body, lists):
    sizes = re.findall(
        r"GPURUNTIME_FAMILY_TAKES_SIZES\(\s*%s\s*,\s*T\s*,\s*N\s*,\s*([\w:]+)\s*,\s*(\w+)\s*\)" % family, body)
    for size, macro in sizes:
        for element, N in pass_members("GPURUNTIME_" + macro):
            for name, arguments, const in functions(body):
                member = "%s, %s<%s%s> " % (element, size, N, "ul" if size == "mpl_::size_t" else "")
                yield "gpuruntime::%s::Invoker<%s>::%s(%s)%s" % (
                    spelled, member, name, ", ".join(spell(a, {"T": element}) for a in arguments), const)
    if sizes:
        return
    takes = re.findall(r"GPURUNTIME_FAMILY_TAKES\(\s*(\w+)\s*,\s*(\w+)\s*,\s*(\w+)\s*\)", body)
    chosen = {parameter: lists[name] for _, parameter, name in takes}
    if any(name != family for name, _, _ in takes) or set(chosen) != set(parameters):
        raise ValueError("%s::Invoker: each parameter needs its GPURUNTIME_FAMILY_TAKES(%s, parameter, list)"
                         % (family, family))
    rounds = re.findall(r"GPURUNTIME_FAMILY_ROUNDS\(\s*(\w+)\s*,\s*(\w+)\s*,\s*(\w+)\s*\)", body)
    # Every combination is a member, but where a result must not be wider than a value.
    for combination in itertools.product(*(chosen[parameter] for parameter in parameters)):
        types = {**given, **dict(zip(parameters, combination))}
        if not all(can_round(types[value], types[result]) for _, value, result in rounds):
            continue
        for name, arguments, const in functions(body):
            members = ", ".join(combination) + (" " if combination[-1].endswith(">") else "")
            yield "gpuruntime::%s::Invoker<%s>::%s(%s)%s" % (
                spelled, members, name, ", ".join(spell(a, types) for a in arguments), const)


def families_spelled(family, parameters, body):
    """The names of a family, each with the arguments of its class template: its own, or one for each generator or each
    combination of subscripts that it is a template over."""
    if not parameters:
        return [(family, {})]
    taken = ", ".join([family, *parameters])
    if re.search(r"GPURUNTIME_SUBSCRIPT_FAMILY_TAKES\(%s\)" % taken, body):
        arguments = subscript_kinds()
    else:
        takes = re.findall(r"GPURUNTIME_GENERATOR_FAMILY_TAKES\(%s, (\w+)\)" % taken, body)
        # A template over anything else would be walked here.
        if len(takes) != 1 or len(parameters) != 1:
            raise ValueError("%s: exportlist.py knows class templates over a generator or subscripts alone" % family)
        arguments = [(generator,) for generator in generator_lists()[takes[0]]]
    return [("%s<%s>" % (family, ", ".join(spell(a, {}) for a in chosen)), dict(zip(parameters, chosen)))
            for chosen in arguments]


def family_names(header, lists):
    found, top = classes(strip_comments(header.read_text()))
    lists = {**lists, **size_lists(header.read_text())}
    for parameters, family, body in found:
        inner, rest = classes(body)
        for spelled, given in families_spelled(family, parameters, body):
            for name, arguments, const in functions(rest):
                yield "gpuruntime::%s::%s(%s)%s" % (spelled, name, ", ".join(spell(a, {}) for a in arguments), const)
            for invoker_parameters, name, invoker_body in inner:
                if name == "Invoker":
                    yield from invoker_names(family, spelled, given, invoker_parameters, invoker_body, lists)
    # Function templates over the generators.
    for returned, name, arguments in re.findall(
            r"template\s*<class G>\s*GPURUNTIME_API\s+(\w+)\s+(\w+)\(([^()]*)\);", top):
        for generator in generator_lists()["AllGenerators"]:
            yield "%s gpuruntime::%s::%s<%s>(%s)" % (
                returned, header.stem, name, generator, ", ".join(spell(a, {}) for a in split_parameters(arguments)))


def generated():
    lists = type_lists()
    names = set(FIXED)
    for header in sorted(HEADERS.glob("*/*.hpp")):
        if header.parent.name not in NOT_FAMILIES:
            names.update(family_names(header, lists))
    return sorted(names)


def exported(library, nm):
    output = subprocess.run([nm, "-DC", "--defined-only", library], check=True, capture_output=True, text=True).stdout
    return sorted({line.split(" ", 2)[2] for line in output.splitlines()})


def differences(expected, found, missing, extra):
    for what, names in ((missing, set(expected) - set(found)), (extra, set(found) - set(expected))):
        for name in sorted(names)[:MOST_PRINTED]:
            print("%s: %s" % (what, name))
        if len(names) > MOST_PRINTED:
            print("%s: %d more" % (what, len(names) - MOST_PRINTED))
    return expected != found


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--check", action="store_true")
    parser.add_argument("--library")
    parser.add_argument("--nm", default="nm")
    options = parser.parse_args()
    if not options.check and not options.library:
        LIST_FILE.write_text("".join(name + "\n" for name in generated()))
        return 0
    committed = LIST_FILE.read_text().splitlines()
    failed = False
    if options.check and differences(generated(), committed, "declared, but not in exports.txt",
                                     "in exports.txt, but not declared"):
        print("exports.txt does not fit the headers: if the interface was meant to change, run `make exports`.")
        failed = True
    if options.library and differences(committed, exported(options.library, options.nm), "missing from the library",
                                       "exported beyond the list"):
        failed = True
    if not failed:
        print("%d names" % len(committed))
    return int(failed)


if __name__ == "__main__":
    sys.exit(main())
