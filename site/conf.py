"""How Sphinx makes the site of the guides and the headers' comments. CMakeLists.txt passes what depends on the build."""

import gc
import pathlib
import sys

gc.disable()  # all that is made stays until the end, and looking through it takes a quarter of the time

sys.path.insert(0, str(pathlib.Path(__file__).parent / "extensions"))

project = "Tessary's device data"
html_title = project
extensions = ["myst_parser", "breathe", "flowcharts", "furo_from_files", "shared_comments"]
suppress_warnings = []

myst_heading_anchors = 4  # as on the pages of repositories
breathe_default_project = "pgmdev"
breathe_domain_by_file_pattern = {"*pgmdev_c.h": "c", "*pgmdev_c_*.h": "c"}

html_theme = "furo"
html_static_path = ["static"]
html_css_files = ["site.css"]
templates_path = ["templates"]
html_copy_source = False
html_show_copyright = False
html_use_index = True
html_show_search_summary = False  # which the search would fetch, and browsers fetch no files
pygments_style = "xcode"
pygments_dark_style = "github-dark"
highlight_language = "none"

# Brighter links, darker keywords: contrast enough for everybody.
html_theme_options = {
    "light_css_variables": {"color-brand-primary": "#1a4fd0", "color-brand-content": "#1a4fd0"},
    "dark_css_variables": {"color-brand-primary": "#6fb3ff", "color-brand-content": "#6fb3ff",
                           "color-api-name": "#ff9c9c", "color-api-pre-name": "#ff9c9c",
                           "color-foreground-muted": "#9ca0a5"},
}
