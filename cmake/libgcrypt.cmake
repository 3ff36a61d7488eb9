# Libgcrypt, which has no CMake package: digests of the reference host and of the generator.
find_library(LIBGCRYPT_LIBRARY gcrypt REQUIRED)
find_path(LIBGCRYPT_INCLUDE_DIR gcrypt.h REQUIRED)
