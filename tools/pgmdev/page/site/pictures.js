// Pictures of the table as a whole, drawn from its records. Each has its numbers in words, too.

const DENSITIES = [0.5, 1, 2, 4, 8, 16, 32, 64, 128, 256, 512, 1024, 2048]; // Mbit
const MBIT_BITS = 1 << 20;

/// `title` is what those are told who do not see it.
function picture(width, height, title, ...children) {
    return draw(
        "svg",
        { viewBox: `0 0 ${width} ${height}`, role: "img", "aria-label": title, class: "picture" },
        ...children,
    );
}

function label(x, y, text, anchor = "start", classes = "label") {
    return draw("text", { x, y, "text-anchor": anchor, class: classes }, text);
}

function density_class(record) {
    const mbit = record.device_bit_size / MBIT_BITS;
    return DENSITIES.findIndex((density) => mbit <= density);
}

/// Each chip once, however many rows recognise it.
function chips_of(records) {
    return records.filter((record) => record.default_dev);
}

/// How many chips of each capacity each maker has: a row for each maker, a disc for each capacity.
function capacity_picture(records) {
    const makers = new Map();
    for (const record of chips_of(records)) {
        const counts = makers.get(record.manufacturer_name) ?? new Array(DENSITIES.length).fill(0);
        const place = density_class(record);
        if (place >= 0) {
            ++counts[place];
        }
        makers.set(record.manufacturer_name, counts);
    }
    const total = (counts) => counts.reduce((sum, count) => sum + count, 0);
    const rows = [...makers].sort((a, b) => total(b[1]) - total(a[1]) || (a[0] < b[0] ? -1 : 1));
    const most = Math.max(1, ...rows.flatMap(([, counts]) => counts));
    const [left, top, step, line] = [132, 26, 44, 24];
    const marks = rows.flatMap(([maker, counts], row) => {
        const y = top + row * line + line / 2;
        const discs = counts.map((count, i) =>
            count === 0
                ? null
                : draw(
                      "g",
                      {},
                      draw("circle", {
                          cx: left + i * step + step / 2,
                          cy: y,
                          r: 4 + 7 * Math.sqrt(count / most),
                          class: "disc",
                      }),
                      label(left + i * step + step / 2, y + 3.5, String(count), "middle", "count"),
                  ),
        );
        return [label(left - 8, y + 4, maker, "end"), ...discs.filter(Boolean)];
    });
    const scale = DENSITIES.map((density, i) =>
        label(left + i * step + step / 2, 14, density < 1024 ? `${density}` : `${density / 1024}G`, "middle", "scale"),
    );
    return picture(
        left + DENSITIES.length * step + 4,
        top + rows.length * line + 6,
        `Number of chips by maker and capacity in Mbit, ${rows.length} makers`,
        ...scale,
        ...marks,
    );
}

/// Seconds on a logarithmic scale.
function time_scale(left, width, least, most) {
    const place = (seconds) => left + (width * Math.log(seconds / least)) / Math.log(most / least);
    const marks = [1, 10, 60, 600, 3600].filter((seconds) => seconds >= least && seconds <= most);
    return { place, marks };
}

function seconds_text(seconds) {
    return `${WITH_THOUSANDS.format(seconds)} s`;
}

const round_time = (seconds) =>
    seconds < 60 ? `${seconds} s` : seconds < 3600 ? `${seconds / 60} min` : `${seconds / 3600} h`;

/// How long erasing a whole chip may take, a dot for each chip, a row for each capacity. `chosen` stands out.
function erase_picture(records, chosen = null) {
    const timed = chips_of(records).filter((record) => record.bulk_erase_time > 0 && density_class(record) >= 0);
    const times = timed.map((record) => record.bulk_erase_time);
    const most = times.reduce((a, b) => Math.max(a, b), 2);
    const rows = DENSITIES.map((density, i) => [density, timed.filter((record) => density_class(record) === i)]).filter(
        ([, each]) => each.length > 0,
    );
    const [left, top, width, line] = [76, 26, 560, 22];
    const { place, marks } = time_scale(left, width, 1, most);
    const height = top + rows.length * line + 6;
    const grid = marks.flatMap((seconds) => [
        draw("line", { x1: place(seconds), x2: place(seconds), y1: top - 4, y2: height - 4, class: "grid" }),
        label(place(seconds), 14, round_time(seconds), "middle", "scale"),
    ]);
    const dots = rows.flatMap(([density, each], row) => {
        const y = top + row * line + line / 2;
        const many = new Map();
        each.forEach(({ bulk_erase_time: time }) => many.set(time, (many.get(time) ?? 0) + 1));
        return [
            label(left - 10, y + 4, density < 1024 ? size_text(density * MBIT_BITS) : `${density / 1024} Gbit`, "end"),
            ...[...many].map(([time, count]) =>
                draw(
                    "circle",
                    { cx: place(time), cy: y, r: Math.min(2.5 + Math.sqrt(count), 8), class: "dot" },
                    draw("title", {}, `${counted(count, "chip", "chips")}: ${seconds_text(time)}`),
                ),
            ),
        ];
    });
    const own_row =
        chosen?.bulk_erase_time > 0
            ? rows.findIndex(([density]) => density === DENSITIES[density_class(chosen)])
            : -1;
    const own =
        own_row < 0
            ? []
            : [
                  draw("circle", {
                      cx: place(chosen.bulk_erase_time),
                      cy: top + own_row * line + line / 2,
                      r: 6,
                      class: "own",
                  }),
              ];
    const title =
        `Longest erase of the whole chip by capacity, from ${seconds_text(Math.min(...times, most))} to ` +
        `${seconds_text(most)}` +
        (own_row < 0 ? "" : `; ${chosen.device_name}: ${seconds_text(chosen.bulk_erase_time)}`);
    return picture(left + width + 24, height, title, ...grid, ...dots, ...own);
}
