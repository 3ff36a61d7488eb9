"""Responses to the identification: those of the rows of a table, and what goes wrong with them."""

import random

NONE = 255


def own_bytes(row):
    """The shortest response that a row takes; None for a signature."""
    places = {row["memory_id_index"]: row["memory_id"]}
    if not row["silicon_id"]:
        places[row["mfc_id_index"]] = row["mfc_id"]
        if row["memory_type_index"] != NONE:
            places[row["memory_type_index"]] = row["memory_type"]
    return bytes(places.get(i, 0) for i in range(max(places) + 1))


def own_response(row):
    return ("silicon:" if row["silicon_id"] else "") + own_bytes(row).hex().upper()


def moved(response, by):
    """The response one bit too early or too late."""
    bits = "".join(f"{byte:08b}" for byte in response)
    bits = bits[1:] + "0" if by < 0 else "0" + bits[:-1]
    return bytes(int(bits[i:i + 8], 2) for i in range(0, len(bits), 8))


def mistaken(response, chance):
    """What becomes of a response on its way."""
    yield response[:1]
    yield response[:2]
    yield response[1:] + response[:1]
    yield response[::-1]
    yield b"\0" + response[::-1]
    yield response + response
    yield response + b"\0\0\0"
    yield response + b"\xff\xff"
    yield bytes([0x9F]) + response
    yield bytes([0, 0]) + response
    yield bytes([0xFF]) + response[:2]
    yield b"\x7f\x7f" + response
    yield moved(response, -1)
    yield moved(response, 1)
    yield response[:2] + bytes([chance.randrange(256)])
    yield response[:1] + bytes([chance.randrange(256)]) + response[2:]
    yield response + bytes([chance.randrange(256), chance.randrange(256)])


def questions(rows):
    """Every row's own response, mistakes of some of them, and responses of nobody."""
    chance = random.Random(1)
    asked = [own_response(row) for row in rows]
    for row in chance.sample([row for row in rows if not row["silicon_id"]], 60):
        asked += [response.hex() for response in mistaken(own_bytes(row), chance) if response]
    asked += [f"silicon:{signature:02X}" for signature in (0x00, 0xFF, 0x13, 0x77)]
    asked += ["00", "000000", "FF", "FFFFFF", "5555", "7F7F7F", "7F", "EF:40-18", "0xEF 0x40 0x18", " C2 20 19 ",
              "00" * 256, "EF4018" * 85]
    asked += [bytes(chance.randrange(256) for _ in range(chance.randint(1, 8))).hex() for _ in range(60)]
    return list(dict.fromkeys(asked))
