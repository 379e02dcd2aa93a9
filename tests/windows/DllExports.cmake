# Fails unless orbel.dll exports exactly the fourteen functions and the four entry points of the
# ActiveX control, by undecorated name. Run as:
# cmake -DOBJDUMP=<objdump> -DLIBRARY=<orbel.dll> -P DllExports.cmake
set(expected
  OB_Calibrate OB_GetDensities OB_GetDensity OB_GetDeviceInfo OB_GetNumberOfAvailableSamples
  OB_GetOption OB_GetSpectrum OB_GetTriStimulus OB_IsConnected OB_KeyPressed OB_SetOption
  OB_SetSubstrate OB_TriggerCountedScan OB_TriggerMeasurement
  DllCanUnloadNow DllGetClassObject DllRegisterServer DllUnregisterServer)

execute_process(COMMAND ${OBJDUMP} -p ${LIBRARY}
  OUTPUT_VARIABLE listing ERROR_VARIABLE errors RESULT_VARIABLE status)
if(NOT status EQUAL 0)
  message(FATAL_ERROR "${OBJDUMP} failed on ${LIBRARY}: ${errors}")
endif()

# The export table lists each name on a line "[<ordinal>] <name>" below "[Ordinal/Name Pointer]
# Table", up to the next empty line.
string(REPLACE "\n" ";" lines "${listing}")
set(exported "")
set(inTable FALSE)
foreach(line IN LISTS lines)
  if(line MATCHES "Ordinal/Name Pointer")
    set(inTable TRUE)
  elseif(inTable AND line MATCHES "^[ \t]*\\[ *[0-9]+\\] (.+)$")
    list(APPEND exported "${CMAKE_MATCH_1}")
  elseif(inTable)
    break()
  endif()
endforeach()
list(SORT exported)
list(SORT expected)

if(NOT exported STREQUAL expected)
  list(JOIN exported "\n  " shown)
  message(FATAL_ERROR "orbel.dll exports other names than the module's functions:\n  ${shown}")
endif()
message(STATUS "orbel.dll exports exactly the module's functions, undecorated")
