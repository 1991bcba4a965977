#!/bin/sh
# The number of cores, for -j: what a system tells by either of two ways, else 1.
nproc 2>/dev/null || getconf _NPROCESSORS_ONLN 2>/dev/null || echo 1
