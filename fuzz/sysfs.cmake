tw_add_fuzzer(fuzz_sysfs LIBS tw_platform_os)
