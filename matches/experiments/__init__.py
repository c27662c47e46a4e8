"""Experiments of many matches: which of several teams is better, by how much, and how sure we are.

``arithmetic`` turns results into estimates and verdicts; ``runs`` plays the matches; ``report``
shows them. The commands ``./compare``, ``./tune`` and ``./tournament`` stand on these.
"""
