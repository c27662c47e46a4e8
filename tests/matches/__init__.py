"""Tests of the package that runs matches."""
