tw_add_fuzzer(fuzz_releasefeed LIBS tw_updates)
