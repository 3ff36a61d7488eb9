#include "data_set.h"
#include "input.h"
#include "names/grammar.h"
#include "names/ordering_codes.h"
#include "reports.h"

// Any bytes as data compiled into the library: as a stream, or, every other one, as the body of a sound one, so that what
// it says is reached.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    CHOICES choices(data, size);
    const bool is_body = choices.flag();
    const std::string rest = choices.rest();
    const BYTES bytes(rest.begin(), rest.end());
    const DATA_SET set = is_body ? seal(bytes) : DATA_SET{bytes, choices.byte() * std::size_t{64}};
    const COMPILED_DATA_SET compiled{set.packed.data(), static_cast<DWORD>(set.packed.size()),
                                     static_cast<DWORD>(set.unpacked_length), "bad stream", "bad length"};
    up_to_a_report([&] {
        const auto store = build_grammar_store(compiled);
        for (const auto& table : store->tables) {
            static_cast<void>(table->key_of(table->key_of("A")));
        }
    });
    up_to_a_report([&] { build_opn_store(compiled); });
    return 0;
}
