"""The one exception of the package: a translation, a file operation or a
configuration that the library refused."""


class TranslateError(Exception):
    """The library refused the work.

    Attributes:
        code: the library's error code (int), with the upper half that a
            listing run's 16-bit code word loses added back (89 becomes
            1376345); None where the library gives no code.
        line: the listing line the library reports (int), 65535 for a
            failure while the binary file was written; None where no line
            applies.
        path: the file the error belongs to (str), or None.
        message: the English text of the error.
    """

    def __init__(self, message, code=None, line=None, path=None):
        super().__init__(message)
        self.message = message
        self.code = code
        self.line = line
        self.path = None if path is None else str(path)

    def __str__(self):
        where = ""
        if self.path is not None:
            where = self.path
            if self.line is not None:
                where += ":%d" % self.line
            where += ": "
        if self.code is not None:
            return "%serror %d: %s" % (where, self.code, self.message)
        return where + self.message
