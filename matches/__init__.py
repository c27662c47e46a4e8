"""Plays matches on this machine: builds, starts, watches, cleans up, and tells what happened.

``python3 -m matches COMMAND ...`` is what the launchers ``./play``, ``./team`` and ``./package``
start. Other programs play a match with :class:`matches.match.Match`.
"""
