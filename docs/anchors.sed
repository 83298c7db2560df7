# Gives the headings of a guide, for Doxygen, the anchors that web pages of the repository give them
# by themselves, and lets links to another guide lead to such an anchor.
/^##+ /{
  h
  s/^#+ //
  s/[^A-Za-z0-9 -]//g
  s/ /-/g
  s/.*/\L&/
  x
  G
  s/\n(.*)/ {#\1}/
}
s/\]\([a-z-]+\.md#/](#/g
