#include "tables/packed_payload.h"

#include <fmt/core.h>

#include <algorithm>
#include <array>
#include <utility>

namespace {

constexpr std::string_view RECORD_END = "END1";
constexpr std::string_view DATABASE_END = "END2";

constexpr std::array<const char*, 12> TAG_NAMES{"DEVID_ENUM", "DEVID_STR", "STRING",     "BOOL",
                                                "BYTE",       "WORD",      "DWORD",      "ENUM",
                                                "FAMILY_TBL", "9",         "DEVICE_TBL", "PART_TBL"};

/// The parts of a payload, in order.
enum PART { VERSION, COUNTS, RECORDS, END, INDEX_TABLES, INDEX_ENTRIES, REST };

constexpr std::array<const char*, REST + 1> PART_NAMES{"version",      "counts",        "records", "end",
                                                       "index tables", "index entries", "rest"};

/// Why reading stops.
struct FAULT {
    std::string text;
};

/// What a field holds, for programs and for people.
struct SHOWN {
    JSON value;
    std::string text;
};

class SCANNER {
public:
    SCANNER(std::span<const BYTE> payload, const PACKED_SCHEMA& schema, const FIELD_SINK& sink)
        : m_payload(payload), m_schema(schema), m_sink(sink) {}

    std::vector<TABLE_CHECK> run() {
        std::string fault;
        try {
            scan();
        } catch (const FAULT& found) {
            fault = found.text;
        }
        std::vector<TABLE_CHECK> checks;
        for (int part = VERSION; part <= REST; ++part) {
            if (m_schema.indexes.empty() && (part == INDEX_TABLES || part == INDEX_ENTRIES)) {
                continue;
            }
            if (part < m_part || (part == m_part && fault.empty())) {
                checks.push_back({PART_NAMES[static_cast<std::size_t>(part)], TABLE_CHECK::PASSED,
                                  m_found.at(static_cast<std::size_t>(part))});
            } else if (part == m_part) {
                checks.push_back({PART_NAMES[static_cast<std::size_t>(part)], TABLE_CHECK::FAILED, fault});
            } else {
                checks.push_back(
                    {PART_NAMES[static_cast<std::size_t>(part)], TABLE_CHECK::SKIPPED,
                     fmt::format("the {} could not be read", PART_NAMES[static_cast<std::size_t>(m_part)])});
            }
        }
        return checks;
    }

private:
    void scan() {
        m_part = VERSION;
        const DWORD version = plain_dword("version");
        require(version == m_schema.version,
                [&] { return fmt::format("found {}, this command reads {}", version, m_schema.version); });
        m_found[VERSION] = std::to_string(version);

        m_part = COUNTS;
        m_records = plain_dword("record_count");
        const DWORD members = plain_dword("member_count");
        m_found[COUNTS] = fmt::format("{} records of {} members", m_records, members);
        require(m_records > 0 && members == m_schema.members.size(), [&] {
            return fmt::format("{}, expected one record or more of {} members", m_found[COUNTS],
                               m_schema.members.size());
        });

        m_part = RECORDS;
        for (DWORD record = 0; record < m_records; ++record) {
            m_record = record;
            for (const PACKED_MEMBER& member : m_schema.members) {
                scan_member(member);
            }
            marker("record end", RECORD_END);
        }
        m_record.reset();
        m_found[RECORDS] = fmt::format("{}, {} behind each", m_records, RECORD_END);

        m_part = END;
        marker("database end", DATABASE_END);
        m_found[END] = DATABASE_END;
        scan_index_tables();
        scan_rest();
    }

    void scan_index_tables() {
        if (m_schema.indexes.empty()) {
            return;
        }
        std::string outside;
        for (const PACKED_INDEX& index : m_schema.indexes) {
            m_part = INDEX_TABLES;
            const BYTE tag = take(1, index.name)[0];
            require(tag == index.tag, [&] {
                return fmt::format("tag {} opens the {} table, expected {}", tag, index.name, DWORD{index.tag});
            });
            emit(index.name, tag, [&] { return SHOWN{{}, tag_name(tag)}; });
            const DWORD entries = plain_dword("entry_count");
            require(entries == index.entries, [&] {
                return fmt::format("the {} table has {} entries, expected {}", index.name, entries, index.entries);
            });
            for (DWORD i = 0; i < entries; ++i) {
                m_element = i;
                const DWORD record = plain_dword(index.name, true);
                if (record != INVALID_DWORD && record >= m_records && outside.empty()) {
                    outside = fmt::format("entry {} of the {} table is {}, and there are {} records", i, index.name,
                                          record, m_records);
                }
            }
            m_element.reset();
            m_found[INDEX_TABLES] +=
                fmt::format("{}{} {} entries", m_found[INDEX_TABLES].empty() ? "" : ", ", index.name, entries);
        }
        m_part = INDEX_ENTRIES;
        require(outside.empty(), [&] { return outside; });
        m_found[INDEX_ENTRIES] = fmt::format("all below {}, or none", m_records);
    }

    void scan_rest() {
        m_part = REST;
        if (const std::size_t rest = m_payload.size() - m_position; rest != 0) {
            take(rest, "rest");
            emit("rest", {}, [] { return SHOWN{{}, "read by nobody"}; });
            throw FAULT{fmt::format("{} bytes behind the end, which nothing reads", rest)};
        }
        m_found[REST] = "nothing";
    }

    /// `tell` says what is wrong, when it is: a text for each of all the fields would take longer than reading them.
    template <class TELL>
    static void require(bool holds, const TELL& tell) {
        if (!holds) {
            throw FAULT{tell()};
        }
    }

    std::string place(std::string_view member) const {
        return fmt::format("{}{} at offset {:#x}", m_record ? fmt::format("record {}, ", *m_record) : "", member,
                           m_start);
    }

    /// The next bytes, which become part of the present field.
    std::span<const BYTE> take(std::size_t count, std::string_view member) {
        if (count > m_payload.size() - m_position) {
            throw FAULT{fmt::format("{}: the payload ends within it", place(member))};
        }
        const auto bytes = m_payload.subspan(m_position, count);
        m_position += count;
        return bytes;
    }

    /// Ends the present field. What follows is the next one. `show` is called when somebody listens.
    template <class SHOW>
    void emit(std::string_view member, std::optional<BYTE> tag, const SHOW& show) {
        if (m_sink) {
            SHOWN shown = show();
            m_sink({m_start, m_payload.subspan(m_start, m_position - m_start), tag ? tag_name(*tag) : "", m_record,
                    member, m_element, std::move(shown.value), std::move(shown.text)});
        }
        m_start = m_position;
    }

    static std::string tag_name(BYTE tag) { return tag < TAG_NAMES.size() ? TAG_NAMES[tag] : std::to_string(tag); }

    DWORD plain_dword(std::string_view member, bool may_be_none = false) {
        const DWORD value = packed_dword(take(4, member).data());
        const bool none = may_be_none && value == INVALID_DWORD;
        emit(member, {}, [&] { return none ? SHOWN{JSON(), "none"} : SHOWN{value, std::to_string(value)}; });
        return value;
    }

    void marker(std::string_view member, std::string_view expected) {
        const auto bytes = take(expected.size(), member);
        require(std::equal(bytes.begin(), bytes.end(), expected.begin()),
                [&] { return fmt::format("{}: expected {}, found other bytes", place(member), expected); });
        emit(member, {}, [&] { return SHOWN{expected, std::string(expected)}; });
    }

    void scan_member(const PACKED_MEMBER& member) {
        const BYTE tag = take(1, member.name)[0];
        const auto is_one_of = [tag](const std::vector<PGMDEV_MANAGER_TYPE>& tags) {
            return std::find(tags.begin(), tags.end(), tag) != tags.end();
        };
        const auto require_tag = [&](bool fits) {
            require(fits, [&] {
                return fmt::format("{}: tag {}, expected {}", place(member.name), tag_name(tag), tag_name(member.kind));
            });
        };
        switch (member.kind) {
            case PGMDEV_MANAGER_STRING:
            case PGMDEV_MANAGER_DEVID_STR: {
                require_tag(is_one_of(m_schema.text_tags));
                const BYTE length = take(1, member.name)[0];
                const auto bytes = take(length, member.name);
                emit(member.name, tag, [&] {
                    const std::string text(bytes.begin(), bytes.end());
                    return SHOWN{text, '"' + text + '"'};
                });
                break;
            }
            case PGMDEV_MANAGER_BOOL: {
                require_tag(tag == member.kind);
                const BYTE value = take(1, member.name)[0];
                require(value <= 1, [&] { return fmt::format("{}: {}, expected 0 or 1", place(member.name), value); });
                emit(member.name, tag, [&] { return SHOWN{value == 1, value == 1 ? "TRUE" : "FALSE"}; });
                break;
            }
            case PGMDEV_MANAGER_BYTE:
                require_tag(tag == member.kind);
                number(member, tag, take(1, member.name)[0]);
                break;
            case PGMDEV_MANAGER_WORD: {
                require_tag(tag == member.kind);
                const auto bytes = take(2, member.name);
                number(member, tag, bytes[0] | DWORD{bytes[1]} << 8);
                break;
            }
            default:
                require_tag(is_one_of(m_schema.number_tags));
                number(member, tag, packed_dword(take(4, member.name).data()));
        }
    }

    void number(const PACKED_MEMBER& member, BYTE tag, DWORD value) {
        emit(member.name, tag, [&] {
            std::string text = pgmdev_cell(value, member.base);
            if (!member.unit.empty()) {
                text += ' ' + std::string(member.unit);
            }
            if (const std::string name = m_schema.name_of ? m_schema.name_of(member, value) : ""; !name.empty()) {
                text += " (" + name + ")";
            }
            return SHOWN{value, std::move(text)};
        });
    }

    std::span<const BYTE> m_payload;
    const PACKED_SCHEMA& m_schema;
    const FIELD_SINK& m_sink;
    std::size_t m_start = 0;     ///< of the present field
    std::size_t m_position = 0;  ///< behind what was read
    PART m_part = VERSION;
    std::optional<DWORD> m_record;
    std::optional<DWORD> m_element;
    DWORD m_records = 0;
    std::array<std::string, REST + 1> m_found;  ///< what the parts that are sound hold
};

}  // namespace

std::vector<TABLE_CHECK> scan_payload(std::span<const BYTE> payload, const PACKED_SCHEMA& schema,
                                      const FIELD_SINK& sink) {
    return SCANNER(payload, schema, sink).run();
}
