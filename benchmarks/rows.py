"""What ./bench compares: the rows of docs/performance.md."""

import dataclasses


@dataclasses.dataclass(frozen=True)
class Row:
    """Something that the library does, its benchmark, and those of its limits and peers, each with a name for people."""

    what: str
    benchmark: str
    peers: tuple


@dataclasses.dataclass(frozen=True)
class Group:
    """Rows that are shown together; the file of their plot."""

    title: str
    plot: str
    rows: tuple


LOOKUP_PEERS = (
    ("bare hash map", "FindInMemory<HASH_MAP>"),
    ("perfect hash (CHD)", "FindInMemory<PERFECT_HASH>"),
    ("cdb", "FindInFile<CDB_FILE>"),
    ("LMDB", "FindInFile<LMDB_FILE>"),
    ("JSON document", "FindInFile<JSON_FILE>"),
    ("SQLite in memory", "FindInMemory<SQLITE_IN_MEMORY>"),
    ("SQLite on disk", "FindInFile<SQLITE_FILE>"),
    ("text table scanned", "FindInFile<TEXT_FILE>"),
)

OPENING_PEERS = (
    ("cdb opened, a name found", "OpenAndFindName<CDB_FILE>"),
    ("LMDB opened, a name found", "OpenAndFindName<LMDB_FILE>"),
    ("SQLite opened, a name found", "OpenAndFindName<SQLITE_FILE>"),
    ("text table read and scanned", "OpenAndFindName<TEXT_FILE>"),
    ("hash map filled", "FillHashMapWithNames"),
    ("JSON file parsed", "OpenAndFindName<JSON_FILE>"),
)


def inflaters(of):
    return (("bare inflate, zlib", f"InflateByZlib<{of}>"),
            ("bare inflate, libdeflate", f"InflateByLibdeflate<{of}>"))


def loading_peers(read_and_inflate, from_file):
    return (("read and inflate, zlib", f"{read_and_inflate}<INFLATER::ZLIB>"),
            ("read and inflate, libdeflate", f"{read_and_inflate}<INFLATER::LIBDEFLATE>"),
            ("text table read into records", f"{from_file}<TEXT_RECORDS>"),
            ("SQLite read into records", f"{from_file}<SQLITE_RECORDS>"),
            ("JSON file parsed into records", f"{from_file}<JSON_RECORDS>"))


GROUPS = (
    Group("First use", "first-use", (
        Row("grammar ready for any name", "FirstUseOfGrammar", inflaters("grammar") + OPENING_PEERS),
        Row("ordering codes ready", "FirstUseOfOrderingCodes", inflaters("ordering_codes") + (
            ("numbers read from a file", "ReadNumbersFromFile"), ("JSON file parsed", "ParseNumbersAsJson"))),
        Row("part from a hash, the first question of a process", "GetOpnFromHash<first_of_all>",
            (("digests of all parts", "DigestsOfAllParts"),)),
        Row("part from a programmer-file name, the first", "GetPartNameFromPcf<first_of_all>",
            (("grammar ready", "FirstUseOfGrammar"),)),
        Row("full name from less, the first", "GetPossibleFullName<first_of_all>",
            (("grammar ready", "FirstUseOfGrammar"),)),
    )),
    Group("Names", "names", (
        Row("package name of a full name", "ReverseLookup", LOOKUP_PEERS),
        Row("the same by the exported class", "GetPackageName", LOOKUP_PEERS[:1]),
        Row("full names of a package name", "ForwardLookup",
            (("bare hash map", "ForwardFindInMultimap"), ("SQLite in memory", "ForwardFindInSqlite"))),
        Row("part from a hash, the stores being there", "GetOpnFromHash<nothing_was_asked>",
            (("digests of all parts", "DigestsOfAllParts"),)),
        Row("part from a hash, after others (with its digest)", "GetOpnFromHash<many_were_asked>",
            (("bare digest", "DigestOfName"), ("bare hash map (with a digest)", "FindNumberInHashMap"))),
        Row("ordering-code index of a part", "GetOpnEnum<many_were_asked>",
            (("bare hash map", "FindFullNameInHashMap"),)),
        Row("part from a programmer-file name, the stores being there", "GetPartNameFromPcf<nothing_was_asked>",
            (("walk over the parts", "WalkOverParts"),)),
        Row("part from a programmer-file name, after others", "GetPartNameFromPcf<many_were_asked>",
            (("bare hash map", "FindProgrammerFileNameInHashMap"),)),
        Row("full name from less, the stores being there", "GetPossibleFullName<nothing_was_asked>",
            (("walk over the parts", "WalkOverParts"),)),
        Row("full name from less, after others", "GetPossibleFullName<many_were_asked>",
            (("bare hash map", "FindPackageNameInHashMap"),)),
        Row("the same by an index object", "AskPartIndexForFullName",
            (("bare hash map", "FindPackageNameInHashMap"),)),
    )),
    Group("Databases", "databases", (
        Row("flash database of 1,000 rows loaded", "LoadFlash",
            loading_peers("ReadAndInflateFlash", "LoadFlashFromFile")),
        Row("profile database loaded", "LoadProfiles",
            loading_peers("ReadAndInflateProfiles", "LoadProfilesFromFile")),
        Row("profile of a part", "GetProfileByPart", (("bare copy of a record", "CopyProfile"),)),
        Row("flash identified among 1,000, by the manager", "IdentifyByManager",
            (("array of the rows walked", "WalkBareArray"), ("SQLite in memory", "FindResponseInSqlite"))),
        Row("flash identified among 1,000, by the index", "IdentifyByIndex",
            (("bare hash map", "FindResponseInHashMap"), ("array of the rows walked", "WalkBareArray"),
             ("SQLite in memory", "FindResponseInSqlite"))),
    )),
    Group("Parameters", "parameters", (
        Row("block of 1,000 bytes written", "WriteBlock",
            (("bare file replaced", "ReplaceFile"), ("SQLite (WAL, synchronous)", "WriteBlockBySqlite"),
             ("LMDB", "WriteBlockByLmdb"))),
        Row("block of 1,000 bytes read", "ReadBlock",
            (("bare file read", "ReadWholeFile"), ("SQLite opened and read", "ReadBlockBySqlite"),
             ("LMDB opened and read", "ReadBlockByLmdb"))),
        Row("12 values encoded", "EncodeValues",
            (("bare copy", "CopyValues"), ("JSON written", "EncodeValuesAsJson"))),
        Row("12 values decoded", "DecodeValues",
            (("bare copy", "CopyValuesBack"), ("JSON parsed", "DecodeValuesFromJson"))),
        Row("number that was typed", "ConvertNumber", (("std::from_chars", "ConvertNumberByCharconv"),)),
    )),
)

# Measured for those who work on them: parts of what is above.
WITHOUT_ROW = (
    "GetOpnEnum<first_of_all>",
    "GetOpnEnum<nothing_was_asked>",
    "GetOpnFromUnknownHash<nothing_was_asked>",
    "GetOpnFromUnknownHash<many_were_asked>",
)
