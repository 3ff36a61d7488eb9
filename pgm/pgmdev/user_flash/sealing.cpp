#include "user_flash/sealing.h"

#include "user_flash/text.h"

std::string sealed_user_flash(const std::string& body) {
    return body + USER_FLASH_BODY_END + user_flash_password(body) + USER_FLASH_TEXT_END;
}

USER_FLASH_CODING encode_checked_user_flash(const std::string& text) {
    USER_FLASH_CODING encoded = encode_user_flash(text);
    if (encoded.failure != nullptr) {
        return encoded;
    }
    const USER_FLASH_CODING decoded = decode_user_flash(encoded.text);
    if (decoded.failure != nullptr) {
        return {{}, decoded.failure, decoded.lacks_memory};
    }
    if (decoded.text != text) {
        return {{}, "Fail to generate INI because fail to counter-check cmp-encode-decode-decmp\n"};
    }
    return encoded;
}
