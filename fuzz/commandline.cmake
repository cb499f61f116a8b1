tw_add_fuzzer(fuzz_commandline LIBS tw_launch)
