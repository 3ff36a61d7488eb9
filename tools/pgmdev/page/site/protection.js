// The block-protect ranges of a chip, drawn over its address space.

/// The bits of the mask that choose a range, the lowest first; null: the record does not say that they are plain ones.
function range_bits(record) {
    const all = [0, 1, 2, 3, 4, 5, 6, 7].filter((bit) => ((record.protection_mask >> bit) & 1) === 1);
    const plain = all.filter((bit) => bit !== record.bottom_value);
    const steps = record.protection_division;
    return steps !== NONE && plain.length > 0 && 2 ** plain.length - 1 === steps ? plain : null;
}

/// Step by step: the bits in the status register, and how many bytes they protect. Each step doubles what is protected;
/// the last one protects all, the first no less than a sector.
function protection_steps(record) {
    const plain = range_bits(record);
    if (plain === null) {
        return null;
    }
    const bytes = Math.floor(record.device_bit_size / 8);
    const least = Math.max(record.device_sector_byte, bytes / 2 ** (record.protection_division - 1));
    return Array.from({ length: record.protection_division + 1 }, (unused, step) => ({
        value: plain.reduce((value, bit, i) => value | (((step >> i) & 1) << bit), 0),
        bytes: step === 0 ? 0 : Math.min(bytes, least * 2 ** (step - 1)),
    }));
}

/// One row for each step, the address space from left to right.
function protection_picture(record, steps, from_bottom) {
    const size = Math.floor(record.device_bit_size / 8);
    const [left, width, line, top] = [64, 440, 20, 8];
    const rows = steps.flatMap(({ value, bytes }, row) => {
        const length = Math.max((bytes / size) * width, bytes === 0 ? 0 : 1.5);
        const y = top + row * line;
        const text = bytes === 0 ? "nothing" : bytes === size ? "all" : bytes_text(bytes);
        return [
            label(
                left - 10,
                y + 12,
                `0x${hex_byte(value | (from_bottom ? 1 << record.bottom_value : 0))}`,
                "end",
                "code",
            ),
            draw("rect", { x: left, y: y + 2, width, height: line - 6, class: "open-range" }),
            draw("rect", {
                x: from_bottom ? left : left + width - length,
                y: y + 2,
                width: length,
                height: line - 6,
                class: "protected-range",
            }),
            label(left + width + 10, y + 12, text),
        ];
    });
    const bottom = top + steps.length * line + 14;
    return picture(
        left + width + 90,
        bottom + 8,
        `Ranges protected from the ${from_bottom ? "bottom" : "top"} of ${bytes_text(size)}, ${steps.length} steps`,
        ...rows,
        label(left, bottom, "address 0", "start", "scale"),
        label(left + width, bottom, bytes_text(size), "end", "scale"),
    );
}

/// The pictures of a record with what they assume, or why there are none.
function protection_part(record) {
    const steps = protection_steps(record);
    if (record.protection_mask === 0) {
        return [make("p", {}, "No bits of the status register protect blocks, as far as the table knows.")];
    }
    if (steps === null) {
        return [
            make(
                "p",
                {},
                "Protected by bits of the status register ",
                make("code", {}, cell_text(FLASH.member_named.get("protection_mask"), record.protection_mask)),
                ", in ranges that are not plain steps: the data sheet has them.",
            ),
        ];
    }
    const has_bottom = record.bottom_value !== NONE;
    const one = (from_bottom, text) =>
        make("figure", {}, protection_picture(record, steps, from_bottom), make("figcaption", {}, text));
    return [
        make(
            "p",
            { class: "note" },
            "The customary ranges for bits like these, by the value in the status register: each " +
                "step doubles what is protected. Where the exact border matters, the data sheet decides.",
        ),
        one(
            false,
            has_bottom ? `Bit ${record.bottom_value} clear: protected from the top.` : "Protected from the top.",
        ),
        has_bottom ? one(true, `Bit ${record.bottom_value} set: protected from the bottom.`) : null,
    ];
}
