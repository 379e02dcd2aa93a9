# Fails unless the dynamic symbols that LIBRARY defines are exactly the fourteen exported
# functions. Run as: cmake -DNM=<nm> -DLIBRARY=<liborbel.so> -P ExportedSymbols.cmake
set(expected
  OB_Calibrate OB_GetDensities OB_GetDensity OB_GetDeviceInfo OB_GetNumberOfAvailableSamples
  OB_GetOption OB_GetSpectrum OB_GetTriStimulus OB_IsConnected OB_KeyPressed OB_SetOption
  OB_SetSubstrate OB_TriggerCountedScan OB_TriggerMeasurement)

execute_process(COMMAND ${NM} -D --defined-only ${LIBRARY}
  OUTPUT_VARIABLE listing ERROR_VARIABLE errors RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${NM} failed on ${LIBRARY}: ${errors}")
endif()

# Lines read "<address> <type> <name>[@@<version>]". The version node itself appears as an
# absolute symbol of that name (llvm-nm adds its own version to it too); it names the interface
# version and exports nothing.
string(REPLACE "\n" ";" lines "${listing}")
set(exported "")
foreach(line IN LISTS lines)
  if(line MATCHES "^[0-9a-fA-F]* *([A-Za-z]) ([^@]+)")
    set(type "${CMAKE_MATCH_1}")
    set(name "${CMAKE_MATCH_2}")
    if(type STREQUAL "A" AND line MATCHES "^0* A ${name}(@@${name})?$")
      continue()
    endif()
    if(type STREQUAL "T")
      list(APPEND exported "${name}")
    else()
      list(APPEND exported "${name} (type ${type}, not a function)")
    endif()
  endif()
endforeach()
list(SORT exported)
list(SORT expected)

if(NOT exported STREQUAL expected)
  list(JOIN exported "\n  " shown)
  message(FATAL_ERROR "liborbel.so exports other symbols than the fourteen functions:\n  ${shown}")
endif()
message(STATUS "exactly the fourteen functions are exported")
