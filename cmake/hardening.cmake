# Hardening for Linux: vorda_hardening carries it to the targets that link it.
#
# Flags from outside come first: what CMAKE_CXX_FLAGS, CMAKE_EXE_LINKER_FLAGS or
# CMAKE_POSITION_INDEPENDENT_CODE say about a measure is left alone. The stack protector is not
# among the measures, since the target's binary would outgrow its 64 KiB (67,048 bytes);
# -DCMAKE_CXX_FLAGS=-fstack-protector-strong adds it where there is room.
add_library(vorda_hardening INTERFACE)
if(NOT CMAKE_SYSTEM_NAME STREQUAL "Linux")
  return()
endif()

target_compile_options(vorda_hardening INTERFACE -Werror=format-security)

# The checks need an optimiser; sanitizers, which Debug builds are for, check more.
if(NOT CMAKE_CXX_FLAGS MATCHES "_FORTIFY_SOURCE")
  target_compile_options(vorda_hardening INTERFACE
    "$<$<NOT:$<CONFIG:Debug>>:-U_FORTIFY_SOURCE;-D_FORTIFY_SOURCE=2>")
endif()

# Not by the property of the same name, which gives libraries -fPIC: calls within an executable are
# then dearer than they need be.
set(type $<TARGET_PROPERTY:TYPE>)
if(NOT DEFINED CMAKE_POSITION_INDEPENDENT_CODE)
  target_compile_options(vorda_hardening INTERFACE
    $<$<NOT:$<STREQUAL:${type},SHARED_LIBRARY>>:-fPIE>)
  target_link_options(vorda_hardening INTERFACE "$<$<STREQUAL:${type},EXECUTABLE>:-fPIE;-pie>")
endif()

if(NOT CMAKE_EXE_LINKER_FLAGS MATCHES "-z,(norelro|lazy)")
  target_link_options(vorda_hardening INTERFACE LINKER:-z,relro LINKER:-z,now)
endif()
