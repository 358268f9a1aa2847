#!/usr/bin/env python3
"""Refreshes the generated sections of README.md from docs/.

Sections stand between '<!-- begin:NAME -->' and '<!-- end:NAME -->':
  usage        docs/usage.md
  porting      the decision sections of docs/notes/*.md, one subsection per family
  performance  docs/performance.md (the latest bench/run table and its comments)
  reliability  docs/notes/reliability.md
"""
import pathlib
import re

root = pathlib.Path(__file__).resolve().parent.parent
notes = root / "docs" / "notes"
FAMILIES = ["frame", "containers", "files", "settings", "language", "env", "profile", "cli"]


def sections(text):
    """Splits a notes file into (heading, body) pairs of its '## ' sections."""
    parts = re.split(r"^## (.*)$", text, flags=re.M)
    return [(parts[i].strip(), parts[i + 1].strip()) for i in range(1, len(parts), 2)]


def porting():
    out = []
    for fam in FAMILIES:
        path = notes / f"{fam}.md"
        if not path.exists():
            continue
        text = path.read_text()
        title = re.search(r"^# (.*)$", text, flags=re.M).group(1)
        title = re.sub(r":? *porting notes$", "", title, flags=re.I)
        out.append(f"### {title}\n")
        for heading, body in sections(text):
            h = heading.lower()
            if "benchmark" in h or "not done" in h:
                continue
            if "decision" not in h:
                out.append(f"#### {heading}\n")
            out.append(body + "\n")
    return "\n".join(out)


def body_of(path, drop_title=True):
    if not path.exists():
        return ""
    text = path.read_text().strip()
    if drop_title:
        text = re.sub(r"\A# .*\n+", "", text)
    text = ("\n" + text).replace("\n### ", "\n#### ").replace("\n## ", "\n### ")
    return text.strip()


def main():
    readme = root / "README.md"
    text = readme.read_text()
    generated = {
        "usage": re.sub(r"\A## .*\n+", "", (root / "docs" / "usage.md").read_text().strip()),
        "porting": porting(),
        "performance": body_of(root / "docs" / "performance.md"),
        "reliability": body_of(notes / "reliability.md"),
    }
    for name, content in generated.items():
        text = re.sub(rf"<!-- begin:{name} -->.*?<!-- end:{name} -->",
                      lambda _m: f"<!-- begin:{name} -->\n{content}\n<!-- end:{name} -->",
                      text, flags=re.S)
    readme.write_text(text)


if __name__ == "__main__":
    main()
