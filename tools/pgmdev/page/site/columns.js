// Lists of objects, from the columns in which the command has written them (page/columns.h).

const DIGITS_64 = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-_";

function front_values(front) {
    const values = [];
    let before = "";
    for (const part of front.split("\n").slice(1)) {
        before = before.slice(0, parseInt(part[0], 36)) + part.slice(1);
        values.push(before);
    }
    return values;
}

function step_values(steps) {
    let number = 0;
    return steps.map((step) => {
        if (step === null) {
            return null;
        }
        number += step % 2 === 0 ? step / 2 : -(step + 1) / 2;
        return number;
    });
}

function run_values(values, runs) {
    const all = [];
    for (let i = 0; i < runs.length; i += 2) {
        for (let count = runs[i + 1]; count > 0; --count) {
            all.push(values[runs[i]]);
        }
    }
    return all;
}

function digit_values(values, digits, width) {
    const all = [];
    for (let i = 0; i < digits.length; i += width) {
        let place = 0;
        for (let digit = i; digit < i + width; ++digit) {
            place = place * 64 + DIGITS_64.indexOf(digits[digit]);
        }
        all.push(values[place]);
    }
    return all;
}

function column_values(column) {
    if (column.plain) {
        return column.plain;
    }
    if (column.front !== undefined) {
        return front_values(column.front);
    }
    if (column.steps) {
        return step_values(column_values(column.steps));
    }
    const values = column_values(column.values);
    return column.runs ? run_values(values, column.runs) : digit_values(values, column.digits, column.width);
}

function rows_of(list) {
    const rows = Array.from({ length: list.rows }, () => ({}));
    for (const column of list.columns) {
        const values = column_values(column);
        rows.forEach((row, i) => {
            row[column.name] = values[i];
        });
    }
    return rows;
}

function data_of(id) {
    return JSON.parse(document.getElementById(id).textContent);
}
