"""The failures that end the editor on purpose: each told in one box, with exit status 70."""


def check_fatal_ends(user):
    pass
