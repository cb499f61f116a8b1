tw_add_fuzzer(fuzz_terminaltext LIBS tw_launch)
