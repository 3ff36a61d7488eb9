"""The page in a real browser: it answers as the command does, can be used by everybody, and asks nobody.

    test_page.py COMMAND NODE_MODULES SCREENSHOTS [TEST...]

Runs all tests of the files beside it (*_test.py) in one session of the browser, or those whose names have one of the texts.
"""

import pathlib
import sys
import unittest

sys.dont_write_bytecode = True
HERE = pathlib.Path(__file__).resolve().parent
sys.path.insert(0, str(HERE))

from page_case import PageTest  # noqa: E402


def main(program, node_modules, screenshots, *wanted):
    loader = unittest.TestLoader()
    loader.testNamePatterns = [f"*{name}*" for name in wanted] or None
    tests = loader.discover(str(HERE), pattern="*_test.py")
    PageTest.start(pathlib.Path(program), pathlib.Path(node_modules), pathlib.Path(screenshots))
    try:
        result = unittest.TextTestRunner(verbosity=0).run(tests)
    finally:
        PageTest.stop()
    return 0 if result.wasSuccessful() and result.testsRun > 0 else 1


if __name__ == "__main__":
    sys.exit(main(*sys.argv[1:]))
