tw_add_fuzzer(fuzz_webmessage LIBS tw_live)
