#!/bin/sed -f
# Turns the links of a page for the reference: headers lead to their own pages, the rest of the tree is text.
s|\[\([^]]*\)\]([./]*sources/toolkit/[A-Za-z]*/\([A-Za-z_.]*\.h\))|\\ref \2 "\1"|g
s|\[\([^]]*\)\]([./]*sources/[^)]*)|\1|g
s|\[\([^]]*\)\]([./]*examples/[^)]*)|\1|g
s|\[\([^]]*\)\]([./]*tests/[^)]*)|\1|g
s|\(\.md\)#[a-z0-9-]*)|\1)|g
s|\[\([^]]*\)\]([./]*docs/[^)]*\.txt)|\1|g
