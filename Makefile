# The commands of the project. Each installs first what this machine lacks (see scripts/setup.sh).
JOBS ?= $(shell nproc)
# Tests also wait, for disks and servers.
TEST_JOBS ?= $(shell expr 2 \* $(JOBS))
SETUP := @scripts/setup.sh

# $(call tree,PRESET,TARGETS) configures and builds one tree under build/.
tree = cmake --preset $(1) --log-level=WARNING && cmake --build --preset $(1) --parallel $(JOBS) --target $(2)
tests = ctest --preset $(1) --parallel $(TEST_JOBS)

# Seconds that the fuzz targets share.
TIME ?= 600

# Sizes of the documents of `make scale`.
SUBJECTS ?= 560 5600

# Tests with more than one thread; not those that also take hold of other processes.
IN_THREADS := TwoThreads.*:*Threads*:QvSAX2ParserReaders.*:QvSAX2ParserFiles.*:QvStringFormat.*:QvLogEvent.*:QvFileWriter.*
IN_THREADS := $(IN_THREADS):Stores/RepositoryConcurrency.*/Sqlite:-*Killed*

.PHONY: build demo test check-long tsan bench scale fuzz fuzz-coverage format

# The command, at build/release/bin/smodel.
build:
	$(SETUP)
	$(call tree,release,smodel-tool)

# The command at work on the documents of examples/models.
demo: build
	scripts/demo.sh build/release/bin/smodel

# All tests, once as released and once under the address and undefined-behaviour sanitizers.
test:
	$(SETUP)
	$(call tree,release,all)
	$(call tests,release)
	$(call tree,sanitize,all)
	$(call tests,sanitize)

# What takes long: the other compiler, the thread sanitizer, the layout of the sources.
check-long:
	$(SETUP) clang format
	git ls-files '*.h' '*.cpp' | xargs clang-format --dry-run --Werror
	$(call tree,clang,all)
	$(call tests,clang)
	$(call tree,tsan,all)
	$(call tests,tsan)

# What runs in several threads, under the thread sanitizer.
tsan:
	$(SETUP)
	$(call tree,tsan,smodel-tests)
	TSAN_OPTIONS=halt_on_error=1 build/tsan/tests/smodel-tests --gtest_filter='$(IN_THREADS)'

# One table, each figure beside the floor measured in the same run.
bench:
	$(SETUP)
	$(call tree,release,smodel-bench)
	build/release/bench/smodel-bench

# What the command needs for large documents, in time and memory; 56000 subjects are about 1 GB.
scale: build
	python3 bench/scale_run.py build/release/bin/smodel $(SUBJECTS)

# Foreign bytes for whatever reads them, for TIME seconds in all; see CONTRIBUTING.md.
fuzz:
	$(SETUP) fuzz
	$(call tree,fuzz,smodel-fuzz)
	scripts/fuzz.sh run $(TIME)

# The lines that the inputs of the last `make fuzz` and the checked-in ones reach.
fuzz-coverage:
	$(SETUP) fuzz
	$(call tree,fuzz-coverage,smodel-fuzz)
	scripts/fuzz.sh coverage

format:
	$(SETUP) format
	git ls-files '*.h' '*.cpp' | xargs clang-format -i
