#pragma once

/// \file
/// Records as cells and as bytes: cells become records, records become bytes, and bytes records, all of it as loops over
/// the record's member table.

#include <algorithm>
#include <string>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "packed/codec.h"
#include "packed/format.h"
#include "records/cells.h"
#include "records/fields.h"
#include "report.h"

/// What is particular to the records of a database; each database specialises it with
/// - MEMBERS, the member table;
/// - FORMAT, its packed encoding;
/// - SYNTAX, that of its cells;
/// - WRONG_CELL_COUNT, the condition that a row with too few or too many cells breaks.
template <class RECORD>
struct RECORD_SCHEMA;

template <class RECORD>
class RECORD_CODEC {
    using SCHEMA = RECORD_SCHEMA<RECORD>;
    static constexpr const auto& MEMBERS = SCHEMA::MEMBERS;
    using MEMBER = std::remove_cvref_t<decltype(MEMBERS[0])>;
    template <std::size_t PLACE>
    static constexpr auto field_at() {
        return std::get<MEMBERS[PLACE].field.index()>(MEMBERS[PLACE].field);
    }
    template <std::size_t PLACE>
    using VALUE = std::remove_cvref_t<decltype(std::declval<RECORD&>().*field_at<PLACE>())>;
    static_assert(field_count<RECORD>() == MEMBERS.size(), "a field of the record has no row in the member table");

    /// Bytes of the tags and values of the members from `first` up to `end`, of texts only the length byte.
    static constexpr DWORD fixed_size(std::size_t first, std::size_t end) {
        constexpr std::array<DWORD, 8> VALUE_SIZES{4, 1, 1, 1, 1, 2, 4, 4};  // by kind
        DWORD size = 0;
        for (std::size_t i = first; i < end; ++i) {
            size += 1 + VALUE_SIZES[MEMBERS[i].kind];
        }
        return size;
    }

public:
    using CELLS = std::vector<std::string>;

    /// Bytes of a record besides the characters of its texts: a tag for each member, the values of fixed size, a length
    /// byte for each text, and "END1".
    static constexpr DWORD FIXED_SIZE = PACKED_MARKER_SIZE + fixed_size(0, MEMBERS.size());

    /// The most records, the last one possibly cut, that a body of `size` bytes, which has a head, can hold.
    static QWORD most_records_in(QWORD size) { return (size - PACKED_BODY_HEAD_SIZE) / FIXED_SIZE + 1; }

    /// The bytes that a row of cells takes as a record, with the marker behind it.
    static QWORD packed_size(const CELLS& cells) {
        QWORD size = FIXED_SIZE;
        for (std::size_t i = 0; i < MEMBERS.size(); ++i) {
            size += is_text(MEMBERS[i].kind) ? cells[i].size() : 0;
        }
        return size;
    }

    /// Takes a member from its cell: null, or the condition that the cell breaks.
    static const char* take(const MEMBER& member, const std::string& cell, RECORD& record,
                            TAKE_NUMBER* take_number_cell = take_number) {
        return std::visit(
            [&](auto field) -> const char* {
                auto& value = record.*field;
                using VALUE = std::remove_reference_t<decltype(value)>;
                if constexpr (std::is_same_v<VALUE, std::string>) {
                    return take_text(SCHEMA::SYNTAX, cell, value);
                } else if constexpr (std::is_same_v<VALUE, bool>) {
                    return take_bool(SCHEMA::SYNTAX, cell, value);
                } else {
                    DWORD number = 0;
                    const char* condition = is_named(member.kind)
                                                ? take_name(SCHEMA::SYNTAX, member.name, member.kind, cell, number)
                                                : take_number_cell(SCHEMA::SYNTAX, cell, number);
                    value = static_cast<VALUE>(number);
                    return condition;
                }
            },
            member.field);
    }

    /// Writes the members of a record, without the marker behind it.
    static void write(PACKED_WRITER& writer, const RECORD& record) {
        for (const MEMBER& member : MEMBERS) {
            write_member(writer, member, record);
        }
    }

    /// Writes a row of cells likewise, cell by cell. There must be one for each member; the first that breaks its
    /// condition is reported.
    static void write_cells(PACKED_WRITER& writer, const CELLS& cells) {
        PGMDEV_REQUIRE(cells.size() == MEMBERS.size(), SCHEMA::WRONG_CELL_COUNT, SCHEMA::FORMAT.file);
        RECORD record;
        for (std::size_t i = 0; i < cells.size(); ++i) {
            const char* condition = take(MEMBERS[i], cells[i], record, take_number_or_report);
            PGMDEV_REQUIRE(condition == nullptr, condition, SCHEMA::FORMAT.file);
            write_member(writer, MEMBERS[i], record);
        }
    }

    /// Reads the members of a record, without the marker behind it.
    static void read(PACKED_READER& reader, RECORD& record) { read_from<0>(reader, record); }

private:
    /// The first text from a member on.
    static constexpr std::size_t next_text(std::size_t place) {
        while (place < MEMBERS.size() && !is_text(MEMBERS[place].kind)) {
            ++place;
        }
        return place;
    }

    // Loading a database is mostly this: the members between two texts have fixed places, so that all of their tags are
    // looked at together, and all of their values taken. Where one is not as it should be they are read one after another,
    // which reports it.

    template <std::size_t FIRST>
    static void read_from(PACKED_READER& reader, RECORD& record) {
        constexpr std::size_t TEXT = next_text(FIRST);
        constexpr auto PLACES = std::make_index_sequence<TEXT - FIRST>();
        if (!read_at_once<FIRST>(reader, record, PLACES)) {
            read_one_by_one<FIRST>(reader, record, PLACES);
        }
        if constexpr (TEXT < MEMBERS.size()) {
            reader.get_string(true, record.*field_at<TEXT>());
            read_from<TEXT + 1>(reader, record);
        }
    }

    template <std::size_t FIRST, std::size_t... PLACES>
    static bool read_at_once(PACKED_READER& reader, RECORD& record, std::index_sequence<PLACES...> /*behind FIRST*/) {
        const BYTE* bytes = reader.ahead(fixed_size(FIRST, FIRST + sizeof...(PLACES)));
        if (bytes == nullptr ||
            !(... && reader.is_good<VALUE<FIRST + PLACES>>(bytes + fixed_size(FIRST, FIRST + PLACES)))) {
            return false;
        }
        ((record.*field_at<FIRST + PLACES>() =
              PACKED_READER::value_behind<VALUE<FIRST + PLACES>>(bytes + fixed_size(FIRST, FIRST + PLACES))),
         ...);
        reader.skip(fixed_size(FIRST, FIRST + sizeof...(PLACES)));
        return true;
    }

    template <std::size_t FIRST, std::size_t... PLACES>
    static void read_one_by_one(PACKED_READER& reader, RECORD& record,
                                std::index_sequence<PLACES...> /*behind FIRST*/) {
        (read_member(reader, record.*field_at<FIRST + PLACES>()), ...);
    }

    template <class NUMBER>
    static void read_member(PACKED_READER& reader, NUMBER& value) {
        if constexpr (std::is_same_v<NUMBER, bool>) {
            value = reader.get_bool();
        } else if constexpr (std::is_same_v<NUMBER, BYTE>) {
            value = reader.get_byte();
        } else if constexpr (std::is_same_v<NUMBER, WORD>) {
            value = reader.get_word();
        } else {
            value = static_cast<NUMBER>(reader.get_dword());
        }
    }

    static void write_member(PACKED_WRITER& writer, const MEMBER& member, const RECORD& record) {
        std::visit(
            [&](auto field) {
                const auto& value = record.*field;
                using VALUE = std::remove_cvref_t<decltype(value)>;
                if constexpr (std::is_same_v<VALUE, std::string>) {
                    writer.put_string(member.kind, value);
                } else if constexpr (std::is_same_v<VALUE, bool>) {
                    writer.put_bool(value);
                } else if (is_named(member.kind)) {
                    writer.put_enum(static_cast<DWORD>(value));
                } else {
                    writer.put_number(static_cast<DWORD>(value), sizeof(VALUE));
                }
            },
            member.field);
    }
};
