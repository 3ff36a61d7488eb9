// The names of the device catalog in all their spellings: the answer of `pgmdev part info`, but for the hash.

const NAMES = (() => {
    const OWN_NAME = "=";
    let rows = null;
    let by_name = null;
    let parts_by_name = null;

    function whole_row(row) {
        return Object.fromEntries(
            Object.entries(row).map(([key, value]) => [key, value === OWN_NAME ? row.name : value]),
        );
    }

    /// They are many, and are read when somebody asks for one.
    function read() {
        if (rows === null) {
            rows = rows_of(data_of("names-data")).map(whole_row);
            by_name = new Map(rows.map((row) => [row.name, row]));
        }
        return rows;
    }

    /// All that a part is called, the names of what it belongs to included.
    function names_of_part(part) {
        const device = by_name.get(part.device);
        return [
            part.name,
            part.package_name,
            part.pgm_name,
            part.device,
            part.pgm_part_pcf,
            part.pgm_family_pcf,
            part.family,
            device?.dev_part_pcf,
            device?.dev_family_pcf,
        ];
    }

    function index_parts() {
        parts_by_name = new Map();
        const parts = read()
            .filter((row) => row.number !== null)
            .sort((a, b) => a.number - b.number);
        for (const part of parts) {
            for (const name of new Set(names_of_part(part))) {
                if (!parts_by_name.has(name)) {
                    parts_by_name.set(name, []);
                }
                parts_by_name.get(name).push(part.name);
            }
        }
    }

    /// The parts that a name stands for in any of its schemes, by number.
    function parts_of(name) {
        if (parts_by_name === null) {
            index_parts();
        }
        return parts_by_name.get(name) ?? [];
    }

    /// What a name stands for; undefined: nothing.
    function spell(question) {
        read();
        const row = by_name.get(upper(trim_white(question)));
        return row && { ...row, parts: parts_of(row.name) };
    }

    /// Names that go on like the question, or like as much of it as any name does.
    function similar(question, most) {
        const wanted = upper(trim_white(question));
        for (let length = wanted.length; length >= 2; --length) {
            const beginning = wanted.slice(0, length);
            const found = read().filter((row) => row.name.startsWith(beginning));
            if (found.length > 0) {
                return found
                    .sort((a, b) => a.name.length - b.name.length || (a.name < b.name ? -1 : 1))
                    .slice(0, most)
                    .map((row) => row.name);
            }
        }
        return [];
    }

    return { spell, similar, count: () => read().length };
})();
