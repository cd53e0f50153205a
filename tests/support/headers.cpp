// The headers that the tests of all folders share, compiled once.
// SPDX-License-Identifier: MIT
