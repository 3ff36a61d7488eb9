"""Shows declarations that share a comment (mark_shared_comments.py) as one entry: all of them, then the comment."""

from sphinx import addnodes

MARK = "SHARES_THE_COMMENT_ABOVE"


def content_of(entry):
    return next(child for child in entry.children if isinstance(child, addnodes.desc_content))


def entry_above(entry):
    """Nothing where the entry is the first of its kind: entries are shown by kind."""
    before = entry.parent.children[:entry.parent.index(entry)]
    return next((each for each in reversed(before) if isinstance(each, addnodes.desc)), None)


def join(_, doctree):
    for entry in list(doctree.findall(addnodes.desc)):
        content = content_of(entry)
        if content.astext().strip() != MARK:
            continue
        content.clear()
        above = entry_above(entry)
        if above is not None:
            place = above.index(content_of(above))
            above[place:place] = [child for child in entry.children if isinstance(child, addnodes.desc_signature)]
            entry.parent.remove(entry)


def setup(app):
    app.connect("doctree-read", join)
    return {"parallel_read_safe": True}
