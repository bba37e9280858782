# A table of contents: each target is a script in tools/ that can be run by hand.
.PHONY: demo test test-proj test-mail build bench fuzz docs package lint format

demo:    ; tools/demo.sh      # both builds, the window host on samples/ under Wine; leaves out/
test:    ; tools/test.sh      # everything: native, sanitizers, Wine, fuzz corpora; ends with "N passed, N failed"
test-proj: ; tools/test_proj.sh  # every projection against PROJ's own programs
test-mail: ; tools/test_mail.sh  # a mail to each of four real servers
build:   ; tools/build.sh linux windows
bench:   ; tools/bench.sh     # one line a workload: name, ours, peer, ratio
fuzz:    ; tools/fuzz.sh      # each fuzz target for FUZZ_SECONDS (60 by default)
docs:    ; tools/docs.sh      # Doxygen reference of the public headers
package: ; tools/package.sh   # the installable archives of both sides, in dist/
lint:    ; tools/lint.sh      # clang-format and clang-tidy over everything
format:  ; tools/format.sh    # clang-format in place
