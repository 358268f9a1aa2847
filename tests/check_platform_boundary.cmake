# Fails if a file outside src/platform includes a POSIX or Linux header: only src/platform
# knows about the system; the rest of the library speaks through its interface.
file(GLOB_RECURSE sources ${SRC}/*.cpp ${SRC}/*.h)
set(offenders)
foreach(f IN LISTS sources)
  if(f MATCHES "/src/platform/")
    continue()
  endif()
  file(STRINGS ${f} includes REGEX
       "^#[ \t]*include[ \t]*<(unistd|fcntl|dirent|pthread|poll|termios|dlfcn|pwd|grp|glob|fnmatch|spawn|sched|semaphore|syslog|sys/[A-Za-z_/]+|netinet/[A-Za-z_]+|arpa/[A-Za-z_]+|linux/[A-Za-z_/]+)\\.h>")
  if(includes)
    list(APPEND offenders "${f}: ${includes}")
  endif()
endforeach()
if(offenders)
  string(REPLACE ";" "\n" text "${offenders}")
  message(FATAL_ERROR "POSIX or Linux headers outside src/platform:\n${text}")
endif()
