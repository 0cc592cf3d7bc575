# Read by CPack for each of the two packages.
if(CPACK_GENERATOR STREQUAL "ZIP")
    set(CPACK_PACKAGE_FILE_NAME KelvoraTool-${CPACK_PACKAGE_VERSION}-portable)
endif()
