#include "flash/oddities.h"

#include <algorithm>
#include <functional>
#include <set>
#include <vector>

#include "flash/hex.h"
#include "flash/matching.h"

// Each way in which a response can go wrong is undone; what a record then matches was probably sent.

namespace {

using RECORD = PGMDEV_SFL_FLASH_INFO;
using RECORDS = std::span<const RECORD>;
using RESPONSE = std::span<const BYTE>;
using BYTES = std::vector<BYTE>;
using ODDITY = PGMDEV_FLASH_ODDITY;
using KIND = PGMDEV_FLASH_ODDITY::KIND;

constexpr BYTE CONTINUATION_CODE = 0x7F;
constexpr std::size_t PLAIN_LENGTH = 3;  ///< maker, type, capacity
constexpr std::size_t MOST_BEFORE = 8;   ///< bytes that may stand before an identification
constexpr std::size_t MOST_NAMED = 4;

std::string hex_text(RESPONSE bytes) {
    std::string text;
    for (const BYTE byte : bytes) {
        text += text.empty() ? "" : " ";
        text += hex_byte(byte);
    }
    return text;
}

/// The first record all of whose bytes are there. A signature is too short to tell a mistake by.
DWORD record_of(RECORDS records, RESPONSE response) {
    const auto found = std::find_if(records.begin(), records.end(), [response](const RECORD& record) {
        return !record.silicon_id && record.memory_type_index != RECORD::NONE &&
               FLASH_COMPARISONS(record).are_met_by(response);
    });
    return found == records.end() ? INVALID_DWORD : static_cast<DWORD>(found - records.begin());
}

std::string name_of(RECORDS records, DWORD index) {
    return records[index].manufacturer_name + " " + records[index].device_name;
}

bool is_known_maker(RECORDS records, BYTE maker) {
    return std::any_of(records.begin(), records.end(), [maker](const RECORD& record) {
        return !record.silicon_id && record.mfc_id_index == 0 && record.mfc_id == maker;
    });
}

ODDITY idle(RESPONSE response) {
    if (are_all(response, 0x00)) {
        return {KIND::IDLE,
                "all zeros: the data line is held low; look for a missing pull-up, a chip without supply or held in "
                "reset, or swapped lines",
                INVALID_DWORD};
    }
    if (are_all(response, 0xFF)) {
        return {KIND::IDLE,
                "all ones: nobody drives the data line; look at chip select, at the supply, and for a chip in deep "
                "power-down or in a mode of four lines",
                INVALID_DWORD};
    }
    return {};
}

ODDITY continuation(RECORDS records, RESPONSE response) {
    const auto begin = std::find_if(response.begin(), response.end(), [](BYTE b) { return b != CONTINUATION_CODE; });
    const auto codes = static_cast<std::size_t>(begin - response.begin());
    if (codes == 0) {
        return {};
    }
    if (begin == response.end()) {
        return {KIND::CONTINUATION,
                "continuation codes (7F) only: the maker's number comes behind them; read more bytes", INVALID_DWORD};
    }
    ODDITY oddity{KIND::CONTINUATION, "", record_of(records, response.subspan(codes))};
    oddity.text = std::to_string(codes) + (codes == 1 ? " continuation code" : " continuation codes") +
                  " (7F): the maker's number " + hex_text(response.subspan(codes, 1)) + " is one of bank " +
                  std::to_string(codes + 1) + " of the makers' list, and no record has that";
    if (oddity.index != INVALID_DWORD) {
        oddity.text += "; without the codes it would be " + name_of(records, oddity.index);
    }
    return oddity;
}

ODDITY stuck(RESPONSE response) {
    if (response.size() < 2 || !are_all(response, response.front())) {
        return {};
    }
    return {KIND::STUCK,
            "the same byte again and again: each byte is a read of its own; keep chip select low and go on clocking",
            INVALID_DWORD};
}

ODDITY late(RECORDS records, RESPONSE response) {
    for (std::size_t before = 1; before <= MOST_BEFORE && before + PLAIN_LENGTH <= response.size(); ++before) {
        const RESPONSE rest = response.subspan(before);
        const DWORD index = record_of(records, rest);
        if (index != INVALID_DWORD) {
            return {KIND::LATE,
                    "the first " + (before == 1 ? "byte" : std::to_string(before) + " bytes") + ", " +
                        hex_text(response.first(before)) + ", " + (before == 1 ? "stands" : "stand") +
                        " before the identification (the command's own byte, or a read begun too early): " +
                        hex_text(rest) + " would be " + name_of(records, index),
                    index};
        }
    }
    return {};
}

/// A read of just so many bytes that begins one too early shows no more than maker and type.
ODDITY late_and_cut(RECORDS records, RESPONSE response) {
    constexpr BYTE READ_IDENTIFICATION = 0x9F;
    if (response.size() != PLAIN_LENGTH) {
        return {};
    }
    const BYTE before = response[0];
    const bool is_none = before == 0x00 || before == 0xFF || before == READ_IDENTIFICATION || before == response[1];
    const auto begins = std::find_if(records.begin(), records.end(), [response](const RECORD& record) {
        return !record.silicon_id && record.mfc_id_index == 0 && record.mfc_id == response[1] &&
               record.memory_type_index == 1 && record.memory_type == response[2];
    });
    if (!is_none || begins == records.end()) {
        return {};
    }
    return {KIND::LATE,
            "the first byte, " + hex_byte(before) +
                ", probably stands before the identification (the command's own byte, or a read begun too early): " +
                hex_text(response.subspan(1)) + " begin those of " + begins->manufacturer_name + "; read one byte more",
            INVALID_DWORD};
}

/// The response moved by one bit, with `filling` where a bit is not known.
BYTES shifted(RESPONSE response, bool to_the_left, bool filling) {
    BYTES bytes(response.begin(), response.end());
    bool carry = filling;
    const auto move = [&](BYTE& byte) {
        const bool out = (byte & (to_the_left ? 0x80 : 0x01)) != 0;
        byte = static_cast<BYTE>(to_the_left ? byte << 1 | (carry ? 0x01 : 0) : byte >> 1 | (carry ? 0x80 : 0));
        carry = out;
    };
    if (to_the_left) {
        std::for_each(bytes.rbegin(), bytes.rend(), move);
    } else {
        std::for_each(bytes.begin(), bytes.end(), move);
    }
    return bytes;
}

/// One bit was not read: two records may take what is known.
ODDITY shifted_response(RECORDS records, RESPONSE response) {
    for (const bool to_the_left : {true, false}) {
        ODDITY oddity;
        for (const bool filling : {false, true}) {
            const BYTES bytes = shifted(response, to_the_left, filling);
            const DWORD index = record_of(records, bytes);
            if (index == INVALID_DWORD || index == oddity.index) {
                continue;
            }
            const std::string sent = hex_text(bytes) + ", " + name_of(records, index);
            if (oddity.kind == KIND::SHIFTED) {
                oddity.text += ", or " + sent + ": one bit was not read";
                continue;
            }
            oddity = {KIND::SHIFTED,
                      std::string("one clock too ") + (to_the_left ? "few" : "many") +
                          " before the first byte was read: shifted by one bit it is " + sent,
                      index};
        }
        if (oddity.kind != KIND::NONE) {
            return oddity;
        }
    }
    return {};
}

/// Tools that keep the identification in a number print the maker last.
ODDITY reversed(RECORDS records, RESPONSE response) {
    const std::size_t zeros =
        response.size() > PLAIN_LENGTH && response.front() == 0 ? 1 : 0;  // of a number of 32 bits
    const BYTES bytes(response.rbegin(), response.rend() - static_cast<std::ptrdiff_t>(zeros));
    const DWORD index = bytes.size() == PLAIN_LENGTH ? record_of(records, bytes) : INVALID_DWORD;
    if (index == INVALID_DWORD) {
        return {};
    }
    return {KIND::REVERSED,
            "the last byte stands first, as in a number: " + hex_text(bytes) + " would be " + name_of(records, index),
            index};
}

/// The makers of which `response` may be what follows their number.
ODDITY without_first_byte(RECORDS records, RESPONSE response) {
    ODDITY oddity;
    std::set<std::string> makers;
    for (DWORD index = 0; index < records.size() && response.size() >= 2; ++index) {
        const RECORD& record = records[index];
        const bool fits = !record.silicon_id && record.default_dev && record.mfc_id_index == 0 &&
                          record.memory_type_index == 1 && record.memory_id_index == 2 &&
                          record.memory_type == response[0] && record.memory_id == response[1];
        if (!fits || makers.size() >= MOST_NAMED || !makers.insert(record.manufacturer_name).second) {
            continue;
        }
        oddity.text +=
            (oddity.text.empty() ? "" : ", ") + hex_text({&record.mfc_id, 1}) + " for " + name_of(records, index);
        oddity.index = oddity.index == INVALID_DWORD ? index : oddity.index;
    }
    if (!makers.empty()) {
        oddity.kind = KIND::FIRST_BYTE_MISSING;
        oddity.text = "no maker has the number " + hex_text(response.first(1)) +
                      ": perhaps the first byte is missing, such as " + oddity.text;
    }
    return oddity;
}

ODDITY repeated(RESPONSE response) {
    if (response.size() > PLAIN_LENGTH && telling_bytes_of(response) == PLAIN_LENGTH &&
        response[PLAIN_LENGTH] == response.front()) {
        return {KIND::REPEATED, "the bytes from 3 on only repeat the first ones, and tell nothing", INVALID_DWORD};
    }
    return {};
}

}  // namespace

bool are_all(std::span<const BYTE> bytes, BYTE value) {
    return !bytes.empty() && std::all_of(bytes.begin(), bytes.end(), [value](BYTE byte) { return byte == value; });
}

DWORD telling_bytes_of(std::span<const BYTE> response) {
    if (response.size() <= PLAIN_LENGTH) {
        return static_cast<DWORD>(response.size());
    }
    const RESPONSE rest = response.subspan(PLAIN_LENGTH);
    const bool repeats = std::equal(rest.begin(), rest.end(), response.begin());
    const bool tells = !repeats && !are_all(rest, 0x00) && !are_all(rest, 0xFF);
    return static_cast<DWORD>(tells ? response.size() : PLAIN_LENGTH);
}

PGMDEV_FLASH_ODDITY flash_response_oddity(std::span<const PGMDEV_SFL_FLASH_INFO> records, bool silicon_id,
                                          std::span<const BYTE> response, DWORD taken) {
    ODDITY oddity = idle(response);
    if (oddity.kind != KIND::NONE) {
        return oddity;
    }
    if (taken != INVALID_DWORD || silicon_id || response.empty()) {
        return repeated(response);
    }
    const auto is_known = [&] { return is_known_maker(records, response.front()); };
    const std::function<ODDITY()> looks[]{
        [&] { return continuation(records, response); },
        [&] { return stuck(response); },
        [&] { return late(records, response); },
        [&] { return late_and_cut(records, response); },
        [&] { return is_known() ? ODDITY() : reversed(records, response); },
        [&] { return is_known() ? ODDITY() : without_first_byte(records, response); },
        [&] { return is_known() ? ODDITY() : shifted_response(records, response); },
    };
    for (const auto& look : looks) {
        oddity = look();
        if (oddity.kind != KIND::NONE) {
            return oddity;
        }
    }
    return {};
}
