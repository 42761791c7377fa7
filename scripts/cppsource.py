"""Reading C++ sources without a compiler: comments out, lines kept."""
import re

_TOKEN = re.compile(r'//[^\n]*|/\*.*?\*/|"(?:\\.|[^"\\\n])*"|\'(?:\\.|[^\'\\\n])\'', re.DOTALL)


def strip_comments(text):
    """The text without its comments, each replaced by its line breaks, so that line numbers stay."""
    def replace(match):
        token = match.group()
        return token if token[0] in "\"'" else "\n" * token.count("\n")
    return _TOKEN.sub(replace, text)


def closing(text, opening):
    """Position of the bracket that closes the one at `opening`."""
    pair = {"{": "}", "(": ")", "<": ">"}[text[opening]]
    depth = 0
    for position in range(opening, len(text)):
        if text[position] == text[opening]:
            depth += 1
        elif text[position] == pair:
            depth -= 1
            if depth == 0:
                return position
    raise ValueError("no bracket closes the one at character %d" % opening)
