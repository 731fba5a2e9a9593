# kel_compress(<input> <output>)
#
# Packs a text with gzip when the build is configured, as Debian wants manual pages and changes: best, and without a date.
function(kel_compress input output)
    get_filename_component(input ${input} ABSOLUTE)
    set_property(DIRECTORY APPEND PROPERTY CMAKE_CONFIGURE_DEPENDS ${input})
    execute_process(COMMAND gzip --best --no-name --stdout ${input} OUTPUT_FILE ${output} COMMAND_ERROR_IS_FATAL ANY)
endfunction()
