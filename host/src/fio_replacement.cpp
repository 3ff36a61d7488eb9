#include "fio.h"
#include "replacing.h"

FIO_REPLACEMENT::~FIO_REPLACEMENT() {
    if (!m_temporary.fullpath().empty()) {
        discard(m_temporary, m_unnamed);
    }
}

bool FIO_REPLACEMENT::write(std::span<const BYTE> contents) {
    if (m_in_place) {
        m_contents.assign(contents.begin(), contents.end());
        return true;
    }
    if (m_temporary.fullpath().empty()) {
        return false;
    }
    m_failed = !overwrite(m_temporary, m_unnamed, contents);
    return !m_failed;
}

bool FIO_REPLACEMENT::commit() {
    if (m_in_place) {
        m_in_place = false;
        return write_in_place(m_target, m_contents);
    }
    if (m_temporary.fullpath().empty() || m_failed || !put_in_place(m_temporary, m_unnamed, m_target)) {
        return false;
    }
    m_temporary = FIO_PATH();
    return true;
}
