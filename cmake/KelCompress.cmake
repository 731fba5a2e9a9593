# kel_compress(<input> <output>)
#
# Packs a text of the source tree with gzip when the build is configured, as Debian wants manual pages and changes.
function(kel_compress input output)
    get_filename_component(input ${input} ABSOLUTE)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${input})
    file(ARCHIVE_CREATE OUTPUT ${output} PATHS ${input} FORMAT raw COMPRESSION GZip COMPRESSION_LEVEL 9)
endfunction()
