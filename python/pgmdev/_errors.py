"""What the library reports. Tracebacks name these classes as programs catch them: pgmdev.InternalError."""

from __future__ import annotations


class InternalError(RuntimeError):
    """A violated precondition, a damaged file, or a table that is refused: the library has ended the operation.

    `condition` is the condition that did not hold, `module`, `file` and `line` tell where it was checked.
    """

    __module__ = "pgmdev"

    def __init__(self, condition: str, module: str, file: str, line: int) -> None:
        super().__init__(condition, module, file, line)
        self.condition = condition
        self.module = module
        self.file = file
        self.line = line

    @property
    def message(self) -> str:
        """One line for people."""
        return f"{self.condition} [{self.module}, {self.file}, line {self.line}]"

    def __str__(self) -> str:
        return self.message


class ContainerError(OSError):
    """The parameter container cannot be read or changed."""

    __module__ = "pgmdev"


class ContainerBusyError(ContainerError):
    """The lock of the parameter container was not to be had for 10 seconds: another writer has it, or no descriptor was
    left to ask with."""

    __module__ = "pgmdev"
