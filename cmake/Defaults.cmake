# The files that instruments show at first touch, made while building: Default.wav and Default.jpg in the current binary
# directory's defaults/. Sets `files_variable` to them in the caller's scope.
find_program(VELDRAN_CJPEG cjpeg REQUIRED)

function(veldran_defaults files_variable)
  set(directory ${CMAKE_CURRENT_BINARY_DIR}/defaults)
  file(MAKE_DIRECTORY ${directory})
  add_custom_command(OUTPUT ${directory}/Default.wav
    COMMAND defaults sound ${directory}/Default.wav
    DEPENDS defaults
    COMMENT "Composing Default.wav"
    VERBATIM)
  # Colours are not halved: a strip of few rows has none to spare.
  add_custom_command(OUTPUT ${directory}/Default.jpg
    COMMAND defaults picture ${directory}/Default.ppm
    COMMAND ${VELDRAN_CJPEG} -quality 92 -optimize -sample 1x1 -outfile ${directory}/Default.jpg ${directory}/Default.ppm
    DEPENDS defaults
    COMMENT "Painting Default.jpg"
    VERBATIM)
  set(${files_variable} ${directory}/Default.wav ${directory}/Default.jpg PARENT_SCOPE)
endfunction()
