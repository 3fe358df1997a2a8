"""The installer sources that docs/recording.md shows are the tested ones:
each file given stands in the document whole, letter for letter, inside a
fenced block.

Usage: check_doc_sources.py DOCUMENT SOURCE..."""
import pathlib
import sys


def main(document, sources):
    text = pathlib.Path(document).read_text()
    missing = [s for s in sources if "\n" + pathlib.Path(s).read_text() + "```\n" not in text]
    for source in missing:
        print(f"FAIL: {document} doesn't show {source} as it is")
    print(f"{len(sources) - len(missing)} passed, {len(missing)} failed")
    return 1 if missing else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2:]))
